# SPDX-License-Identifier: Apache-2.0
"""Dates, URLs and texts in some encoding."""

from makers.chance import number, pick


def date():
    day, month, year = number(1, 31), number(1, 12), number(1950, 2049)
    clock = pick([f"{number(0, 24)}:{number(0, 60):02}", f"{number(0, 23):02}:{number(0, 59):02}:{number(0, 60):02}"])
    zone = pick(["GMT", "+0100", "-05:30", "EST", "Z", "CEST", "PDT", "", "(UTC)"])
    names = pick(["Jan February MAR april May. jun July Aug Sept October nov Dec".split(), "janvier Februar März abril maggio 6月 juillet août elokuu".split()])
    made = pick([f"{day} {pick(names)} {year} {clock} {zone}", f"{year}-{month:02}-{day:02}T{clock}{zone}", f"{month}/{day}/{year} {clock}", f"{day}.{month}.{year}",
                 f"{pick(names)} {day}, {year}", f"{pick(['Sun', 'Tuesday', 'Do', 'lun.'])}, {day}-{pick(names)}-{year % 100:02} {clock} {zone}", f"{year}{month:02}{day:02}",
                 f"{year}-W{month:02}-{day % 8}", f"{year}-{day * 10:03}", f"{pick(names)} {year}", f"{pick(['Thu'])} {pick(names)} {day} {clock} {zone} {year}", f"{clock} {day}/{month}/{year}"])
    return made.strip()


def whole_date():
    """One that anybody reads."""
    day = f"{pick(['Mon, ', ''])}{number(1, 28)} {pick('Jan Feb Mar Dec'.split())} {number(1950, 2049)}"
    return f"{day} {number(0, 23):02}:{number(0, 59):02}:{number(0, 59):02} {pick(['GMT', '-0330', 'EST'])}"


def url():
    scheme = pick("http:// https:// HTTP:// ftp:// feed: mailto: javascript: file:/// // ttp:// http:/ http:///  data: news: about: feed://".split(" "))
    host = pick("h.example www.H.Example:80 user:pw@h.example 127.0.0.1:8080 [::1] google.com münchen.example h..example localhost xn--mnchen-3ya.de".split())
    path = pick(["", "/", "/a/../b", "/a b", "/%7Eu/", "/index.html", "/x.php;jsessionid=1A2B", "/ä", "/a//b/./c.PDF", "/%", "/default.asp", "/rss.xml"])
    query = "&".join(f"{pick(['q', 'id', 'utm_source', 'PHPSESSID', 's', 'url', ''])}{pick(['=', ''])}{pick(['1', 'a+b', '%20', 'http%3A%2F%2Fx', ''])}" for _ in range(number(1, 3)))
    return scheme + pick([host, host, ""]) + path + pick(["", "", "?" + query]) + pick(["", "#f", "#!g", "#"]) or "x"


def encoded():
    name = pick("iso-8859-1 windows-1252 utf-8 utf-16 utf-16le shift_jis gb18030 big5 euc-kr koi8-r iso-8859-2 windows-1251 mac-roman x-none utf-7".split())
    text = {"shift_jis": "日本語の文章", "gb18030": "中文的句子", "big5": "中文的句子", "euc-kr": "한국어 문장", "koi8-r": "Русский текст", "windows-1251": "Русский текст"}
    body = text.get(name, "Größe naïve café") * 3
    declared = pick([f"<?xml version='1.0' encoding='{name}'?>", f"<meta charset={name}>", f"<meta http-equiv=Content-Type content='text/html; charset={name}'>",
                     "", "<meta charset=utf-8>"])
    try:
        made = f"{declared}<p>{body}</p>".encode({"mac-roman": "mac_roman", "x-none": "latin-1"}.get(name, name), "ignore")
    except LookupError:
        made = body.encode()
    return made + pick([b"", b"\xff", b"\x80\x81", "é".encode(), b"\0"])
