# SPDX-License-Identifier: Apache-2.0
"""Dates, URLs and texts in some encoding."""

from makers.chance import chance, number, pick, several

MONTHS = """Jan February MAR april May. jun July Aug Sept October nov Dec janvier Februar März abril maggio 6月 juillet août elokuu""".split()
ZONES = ["GMT", "+0100", "-05:30", "EST", "Z", "CEST", "PDT", "", "(UTC)"]

SCHEMES = ["http://", "https://", "HTTP://", "ftp://", "feed:", "feed://", "mailto:", "javascript:", "file:///", "//", "ttp://", "http:/",
           "http:///", "", "data:", "news:", "about:"]  # fmt: skip
HOSTS = """h.example www.H.Example:80 user:pw@h.example 127.0.0.1:8080 [::1] google.com münchen.example h..example localhost
xn--mnchen-3ya.de""".split() + [""] * 5
PATHS = ["", "/", "/a/../b", "/a b", "/%7Eu/", "/index.html", "/x.php;jsessionid=1A2B", "/ä", "/a//b/./c.PDF", "/%", "/default.asp", "/rss.xml"]
FIELDS = [f"{name}{sign}{value}" for name in ("q", "id", "utm_source", "PHPSESSID", "s", "url", "") for sign in ("=", "")
          for value in ("1", "a+b", "%20", "http%3A%2F%2Fx", "")]  # fmt: skip

TEXTS = {"shift_jis": "日本語の文章", "gb18030": "中文的句子", "big5": "中文的句子", "euc-kr": "한국어 문장", "koi8-r": "Русский текст",
         "windows-1251": "Русский текст", **dict.fromkeys("iso-8859-1 windows-1252 iso-8859-2 mac-roman utf-8 utf-16 x-none".split(), "Größe café")}  # fmt: skip
CODECS = {"mac-roman": "mac_roman", "utf-16": "utf-16-le", "x-none": "latin-1"}


def date():
    """In one of many forms; not every one is there."""
    day, month, year = number(1, 31), number(1, 12), number(1950, 2049)
    clock, zone, name = f"{number(0, 24)}:{number(0, 60):02}{pick(['', f':{number(0, 60):02}'])}", pick(ZONES), pick(MONTHS)
    made = pick([
        f"{day} {name} {year} {clock} {zone}", f"{year}-{month:02}-{day:02}T{clock}{zone}", f"{month}/{day}/{year} {clock}", f"{day}.{month}.{year}",
        f"{pick(['Sun', 'Tuesday', 'Do', 'lun.'])}, {day}-{name}-{year % 100:02} {clock} {zone}", f"{year}{month:02}{day:02}", f"{name} {day}, {year}",
        f"{year}-W{month:02}-{day % 8}", f"{year}-{day * 10:03}", f"{name} {year}", f"Thu {name} {day} {clock} {pick(ZONES[:-1])} {year}", f"{clock} {day}/{month}/{year}",
    ])  # fmt: skip
    return made.strip()


def header_date():
    """In a form of HTTP, but for one in four."""
    day, name, year = number(1, 28), pick(["Jan", "Feb", "Sep", "Dec"]), number(1950, 2049)
    clock = f"{number(0, 24):02}:{number(0, 59):02}:{number(0, 60):02}"
    return pick([f"Sun, {day:02} {name} {year} {clock} GMT", f"Sunday, {day:02}-{name}-{year % 100:02} {clock} GMT", f"Sun {name} {day:2} {clock} {year}",
                 f"{pick(['Sun', 'x'])}, {day} {name} {year} {clock} {pick(ZONES)}"])  # fmt: skip


def whole_date():
    """One that anybody reads."""
    day = f"{pick(['Mon, ', ''])}{number(1, 28)} {pick(['Jan', 'Feb', 'Mar', 'Dec'])} {number(1950, 2049)}"
    return f"{day} {number(0, 23):02}:{number(0, 59):02}:{number(0, 59):02} {pick(['GMT', '-0330', 'EST'])}"


def url():
    query = "?" + "&".join(several(FIELDS, number(1, 3))) if chance(0.4) else ""
    return pick(SCHEMES) + pick(HOSTS) + pick(PATHS) + query + pick(["", "#f", "#!g", "#"]) or "x"


def encoded():
    """A page whose encoding is declared, or another one, or none; the end may be of none."""
    name = pick(TEXTS)
    declared = pick([f"<?xml version='1.0' encoding='{name}'?>", f"<meta charset={name}>", "", "<meta charset=utf-8>",
                     f"<meta http-equiv=Content-Type content='text/html; charset={name}'>"])  # fmt: skip
    text = f"{declared}<p>{TEXTS[name] * 3}</p>".encode(CODECS.get(name, name), "ignore")
    return text + pick([b"", b"\xff", b"\x80\x81", "é".encode(), b"\0"])
