#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The quiverleaf command as a person and a script use it, with the real helper."""

import base64
import ctypes
import datetime
import json
import os
import pathlib
import plistlib
import re
import signal
import subprocess
import tty
import unittest

import documents
from command import COMMAND, CommandTestCase

TOP = pathlib.Path(__file__).resolve().parents[2]
DATA = TOP / "tests" / "data"
DOCUMENTS = DATA / "word-processors"
MANUAL = TOP / "docs" / "man" / "quiverleaf.1"

# Of linux/prctl.h and linux/capability.h.
PR_CAPBSET_DROP = 24
CAP_DAC_OVERRIDE = 1
CAP_DAC_READ_SEARCH = 2


def obey_permissions():
    """Takes from a program that root is about to start the right to read every file."""
    if os.geteuid() == 0:
        for capability in (CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH):
            if ctypes.CDLL(None).prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0:
                raise OSError("the capability cannot be dropped")


class CommandTest(CommandTestCase):
    def test_pdf_in_all_forms(self):
        data = documents.pdf(("First page", "Second page"), title="A title")
        self.file("a.pdf", data)
        answer = self.answer("pdf", "a.pdf")
        self.assertEqual((answer["PageCount"], answer["Title"]), (2, "A title"))
        self.assertIn("Second page", answer["String"])
        self.assertEqual(self.answer("pdf", "-", input=data), answer)
        pretty = self.run_command("--pretty", "pdf", "a.pdf", "--timeout", "10").stdout
        self.assertIn(b'\n  "PageCount": 2', pretty)
        done = self.run_command("pdf", "--attributed", "a.pdf")
        attributed = json.loads(done.stdout)
        self.assertEqual((done.returncode, done.stderr, attributed["PageCount"]), (0, b"", 2))
        self.assertIn(rb"First page", base64.b64decode(attributed["String"]))
        self.assertEqual(plistlib.loads(self.run_command("pdf", "--plist", "a.pdf").stdout), answer)

    def test_pages_of_a_pdf(self):
        self.file("a.pdf", documents.pdf(("One", "", "Three")))
        missing = b"quiverleaf: a.pdf: page 2 has no text layer\n"
        for pages, text, message in (("1-", b"One\n\f\fThree\n", missing), ("3", b"Three\n", b""), ("1-2", b"One\n\f", missing)):
            done = self.run_command("pdf", "--text", "a.pdf", "--pages", pages)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, text, message))
        self.assertEqual(self.answer("pdf", "a.pdf", "--pages=3-3"), {"String": "Three\n\n", "PageCount": 3})
        self.assert_fails(3, "a.pdf: the pages asked for have no text layer", "pdf", "--text", "--pages", "2", "a.pdf")
        self.assert_fails(3, "a.pdf: there is no page 4: the PDF has 3", "pdf", "--pages", "4", "a.pdf")

    def test_passwords_open_a_pdf(self):
        locked = str(DATA / "pdf" / "locked-pages.pdf")
        title = json.loads(self.run_command("metadata", str(DATA / "pdf" / "metadata.pdf")).stdout)["kMDItemTitle"]
        self.file("password", b"user\nanother line\n")
        for option, data in (("--password=user", b""), ("--password-file=password", b""), (f"--password-file={(self.folder.resolve() / 'password').as_uri()}", b""), ("--password-file=-", b"owner\r\n")):
            self.assertEqual(json.loads(self.run_command("pdf", option, locked, input=data).stdout)["Title"], title)
        self.assert_fails(3, "the PDF is locked by another password", "pdf", "--text", "--password=secret", locked)
        self.file("latin", b"\xe9\n")
        self.assert_fails(1, "the password is not in UTF-8", "pdf", "--password-file", "latin", locked)
        runtime = pathlib.Path(self.environment["QUIVERLEAF_RUNTIME_DIR"])
        self.assertNotIn(b"secret", next(runtime.glob("*.record")).read_bytes())

    def test_a_locked_pdf_is_an_answer(self):
        self.file("locked.pdf", documents.pdf(locked=True))
        done = self.run_command("pdf", "locked.pdf")
        answer = json.loads(done.stdout)
        self.assertEqual((done.returncode, answer["Locked"], "String" in answer), (0, True, False))
        self.assertRegex(done.stderr, rb"\Aquiverleaf: locked\.pdf: the PDF is locked[^\n]*\n\Z")
        self.assert_fails(3, "locked.pdf: the PDF is locked", "pdf", "--attributed", "-o", "out.rtfd", "locked.pdf")

    def test_metadata_of_files_with_any_name(self):
        for name in ("plain.txt", "\u00fcber.txt", b"caf\xe9 \xff.txt", "-dash.txt"):
            with self.subTest(name):
                self.file(name, b"Some words in a file")
                answer = self.answer("metadata", "--", name)
                self.assertIn("Some words", answer["kMDItemTextContent"])

    def test_metadata_without_the_text_with_it_alone_and_with_facts_of_the_file(self):
        self.file("a.txt", b"Some words")
        facts = {"kMDItemPath": str(self.folder / "a.txt"), "kMDItemFSName": "a.txt", "kMDItemContentType": "public.plain-text", "kMDItemFSSize": 10}
        text = {"kMDItemTextContent": "Some words"}
        self.assertEqual(self.answer("metadata", "a.txt"), text)
        self.assertEqual(self.answer("metadata", "--no-text", "a.txt"), {})
        self.assertEqual(self.answer("metadata", "--file-facts", "a.txt"), text | facts)
        self.assertEqual(self.answer("metadata", "--file-facts", "--no-text", "a.txt"), facts)
        (self.folder / "a.rtfd").mkdir()
        self.file("a.rtfd/TXT.rtf", rb"{\rtf1 words}")
        folder = self.answer("metadata", "--file-facts", "--no-text", "a.rtfd/")
        self.assertEqual((folder["kMDItemFSName"], folder["kMDItemContentType"]), ("a.rtfd", "com.apple.rtfd"))
        self.assertNotIn("kMDItemFSSize", folder)
        done = self.run_command("metadata", "--text-only", "a.txt")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"Some words\n", b""))
        self.file("locked.pdf", documents.pdf(locked=True))
        self.assert_fails(3, "locked.pdf: the PDF is locked", "metadata", "--text-only", "locked.pdf")

    def test_types_of_files(self):
        self.file("a.txt", b"")
        self.file("paper", documents.pdf())
        self.assertEqual(self.answer("type", "a.txt", "paper", "."), ["public.plain-text", "com.adobe.pdf", "public.folder"])
        self.assertEqual(self.answer("type", "-", input=documents.pdf()), ["com.adobe.pdf"])
        done = self.run_command("type", "--plist", "a.txt", "missing")
        self.assertEqual((done.returncode, plistlib.loads(done.stdout)), (7, ["public.plain-text", ""]))
        self.assertEqual(done.stderr, b"quiverleaf: missing: there is no such file\n")

    def test_entities_without_a_helper(self):
        text = "caf&eacute; &lt;&#225;&gt;"
        cases = [
            ("caf\u00e9 <\u00e1>", text),
            ("caf\u00e9 &lt;\u00e1&gt;", "--no-standard", text),
            ("caf&eacute; <\u00e1>", "--numeric", text),
            ("cafe <a>", "--non-umlauted", text),
            ("\u00e9&lt;\u4e2d", "--encode", "standard", "\u00e9<\u4e2d"),
            ("&#233;<&#20013;", "--encode=high", "\u00e9<\u4e2d"),
            ("&eacute;<&#20013;", "--encode", "high", "--encode", "table", "\u00e9<\u4e2d"),
            ("", ""),
            ("caf\ufffd", b"caf\xe9"),
        ]
        for expected, *arguments in cases:
            with self.subTest(arguments):
                done = self.run_command("entities", *arguments)
                self.assertEqual((done.returncode, done.stdout.decode(), done.stderr), (0, expected + "\n", b""))
        done = self.run_command("entities", "-", input=b"a&amp;b\n\nx&#65\n")
        self.assertEqual((done.returncode, done.stdout), (0, b"a&b\n\nx\x065\n"))
        self.assert_fails(2, "No helper is registered", "ping", "--no-start")

    def test_strip_without_a_helper(self):
        page = "<h1>caf\u00e9</h1><p class=a>b &amp; <a href='u' id=i>c</a> <img alt=d><div>e</div>"
        self.file("page.html", page.encode())
        cases = [
            (" caf\u00e9 b &amp; c  e",),
            (page.replace("<h1>", "").replace("</h1>", ""), "--tag", "h1"),
            (page.replace("a href='u' id=i", 'A HREF="u"').replace("</a>", "</A>"), "--attributes=a"),
            (page[: page.index("<div>")].replace("<h1>caf\u00e9</h1>", ""), "--bodies", "h", "--bodies", "<div"),
            ("<h1>caf\u00e9</h1>\n<div>e</div>\n", "--except", "h1", "--except", "DIV"),
            (page.replace("<img alt=d>", "d").replace("<div>", "<div> "), "--objects"),
        ]
        for expected, *options in cases:
            with self.subTest(options):
                done = self.run_command("strip", *options, "page.html")
                self.assertEqual((done.returncode, done.stdout.decode(), done.stderr), (0, expected + "\n", b""))
        done = self.run_command("strip", "-", input="<meta charset=koi8-r>\u041f".encode("koi8-r"))
        self.assertEqual(done.stdout.decode(), " \u041f\n")
        for option, stripped in ("--except", "<h1>caf\u00e9</h1>\n<div>e</div>\n"), ("--bodies", page[page.index("<p") : page.index("<div>")]):
            done = self.run_command("strip", "page.html", option, "h1", "div")
            self.assertEqual(done.stdout.decode(), stripped + "\n")
        self.assert_fails(1, "'h1' is too much for strip", "strip", "page.html", "--tag=div", "h1")
        self.assert_fails(3, "page.html: has no such element", "strip", "--except", "td", "page.html")
        self.assert_fails(7, "missing: there is no such file", "strip", "missing")
        self.assert_fails(2, "No helper is registered", "ping", "--no-start")

    def test_tags_of_markup(self):
        self.file("zero.html", b"<p>a\0b")
        self.assertEqual([tag["name"] for tag in self.answer("tags", "zero.html")], ["p", None])
        self.file("page.html", b'a<b c>"<!--d--><script>e</script')
        answer = self.answer("tags", "page.html")
        expected = [
            (1, "b", [1, 5], [0, 1]),
            (2, None, [7, 8], [6, 1]),
            # The end tag without ">" counts as one unit longer than it is.
            (1, "script", [15, 18], [15, 0]),
            (0, None, [32, 0], [33, 0]),
        ]
        keys = ("kind", "name", "tag", "text")
        self.assertEqual(answer, [dict(zip(keys, values)) for values in expected])
        pretty = self.run_command("tags", "--pretty", "page.html").stdout
        self.assertEqual((json.loads(pretty), pretty.count(b"\n") > len(answer)), (answer, True))
        named = [{key: value for key, value in tag.items() if value is not None} for tag in answer]
        self.assertEqual(plistlib.loads(self.run_command("tags", "--plist", "page.html").stdout), named)
        self.assertEqual(self.answer("tags", "-", input=b""), [])
        many = self.answer("tags", "-", input=b"<p>\n" * 10000)
        self.assertEqual((len(many), many[9999]["tag"]), (10001, [39996, 3]))

    def test_facts_and_links_of_pages(self):
        page = (b"<meta charset=windows-1252><title> caf\xe9 &amp; </title><base href=http://a.org/><meta name=Author content='B &amp; C'>"
                b"<link rel=canonical href='/?u=%26'><body><a href='?u=%2f%26'>An <b>&amp;</b></a><a href=x.rss>feed</a>"
                b"<a href='?u=%2f%26' rel=nofollow><img src='a b.png' alt=image></a><script src=s.js></script><embed href=e><frame src=f>")
        self.file("page.html", page)
        facts = {"Title": " caf\u00e9 &amp; ", "NormalizedTitle": "caf\u00e9 &", "BaseURL": "http://a.org/",
                 "CanonicalURL": "/?u=%26", "Author": "B &amp; C", "IndexedTitle": " caf\u00e9 &amp; ", "Feed": False,
                 "MetaAttributes": {"author": "B & C"}}
        self.assertEqual(self.answer("page", "page.html"), facts)
        metas = {"date": "2006-12-24", "keywords": "k", "description": "d", "copyright": "c", "robots": "noindex",
                 "revisit-after": "3 days", "indextitle": "x"}
        all_metas = "".join(f"<meta name={name} content='{content}'>" for name, content in metas.items())
        told = self.answer("page", "-", input=f"{all_metas}<meta http-equiv=refresh content=5><link rel='shortcut icon' href=i.ico><rss>".encode())
        self.assertEqual(told, {"Title": "", "NormalizedTitle": "", "Date": "2006-12-24", "FavIcon": "/i.ico", "IndexTitle": "x",
                                "Keywords": "k", "Description": "d", "Copyright": "c", "Refresh": "5", "Robots": "noindex",
                                "RevisitAfter": "3 days", "Feed": True, "MetaAttributes": metas})
        links = {"BaseURL": "http://a.org/", "Links": ["?u=/%26", "x.rss"], "Frames": ["f"], "Images": ["a%20b.png"],
                 "StylesheetsAndScripts": ["s.js"], "EmbeddedObjects": ["e"]}
        self.assertEqual(self.answer("links", "-", input=page), links)
        for command in ("links", "tags"):
            shown = [self.run_command(command, *form, "page.html").stdout for form in ((), ("--pretty",))]
            self.assertEqual(json.dumps(json.loads(shown[0])), json.dumps(json.loads(shown[1])))
        self.assertEqual(plistlib.loads(self.run_command("links", "--plist", "page.html").stdout), links)
        cases = [(["?u=/%26"], "--filtered"), (["?u=/%26"], "--containing", "An &"), (["?u=/%26"], "--nofollow", "--filtered"),
                 (["x.rss"], "--containing", "feed"), ([], "--containing", "image", "--nofollow")]
        for expected, *options in cases:
            self.assertEqual(self.answer("links", *options, "page.html")["Links"], expected, options)
        found = self.answer("links", "--details", "page.html")["Links"]
        self.assertEqual([(link["URL"], link["Text"], link.get("NoFollow")) for link in found],
                         [("?u=/%26", "An &", None), ("x.rss", "feed", None), ("?u=/%26", "image", True)])
        location, length = found[1]["Tag"]
        self.assertEqual(page[location:location + length], b"<a href=x.rss>")

    def test_text_of_pages(self):
        page = ("<meta charset=windows-1252><title>T</title><body>caf\u00e9<br>a\n> b<b style='display:none'>junk</b>"
                "<!--googleoff: all-->hidden")
        self.file("page", page.encode("windows-1252"))
        cases = [
            ("T\n\ncaf\u00e9\na > bjunkhidden", "page"),
            ("caf\u00e9\na > bjunkhidden", "--body", "page"),
            ("T\n\ncafe\na > bjunkhidden", "--plain-ascii", "page"),
            ("T\n\ncaf\u00e9\na\n> bjunk", "--reformat", "--google-tags", "page"),
            ("T\n\ncaf\u00e9\na > bhidden", "--no-junk", "page"),
            (" caf\u00e9 a\n> b junk hidden", "--simple", "page"),
        ]
        for expected, *arguments in cases:
            with self.subTest(arguments):
                done = self.run_command("text", *arguments)
                self.assertEqual((done.returncode, done.stdout.decode(), done.stderr), (0, expected + "\n", b""))
        for arguments in (["-"], ["--simple", "-"], ["--body", "-"]):
            self.assert_fails(3, "standard input: has no text", "text", *arguments, input=b"<br>")

    def test_text_of_files_by_their_content(self):
        contents = {
            "pdf": documents.pdf(("Leaflet",)),
            "docx": (DOCUMENTS / "letter.docx").read_bytes(),
            "odt": (DOCUMENTS / "letter.odt").read_bytes(),
            "rtf": rb"{\rtf1\ansi Leaflet}",
            "html": b"<!DOCTYPE html><html><body><p>Leaflet</body></html>",
            "txt": b"Leaflet, a word of a text",
        }
        for true, content in contents.items():
            for named in ("pdf", "docx", "doc", "rtf", "html", "txt", "c", "jpg", "hwp"):
                if true == "html" and named in ("txt", "c"):
                    continue  # A page is text, too.
                with self.subTest(true=true, named=named):
                    self.file(f"a.{named}", content)
                    done = self.run_command("text", f"a.{named}")
                    self.assertEqual((done.returncode, done.stderr), (0, b""))
                    self.assertIn(b"First heading" if true in ("docx", "odt") else b"Leaflet", done.stdout)
                    self.assertNotRegex(done.stdout, rb"<|\\rtf|obj")
        picture = (TOP / "examples" / "leaf.jpg").read_bytes()
        for name, content in (("a.jpg", picture), ("a.txt", picture), ("page.html", b"<html><body><img src=x>"), ("none.pdf", documents.pdf(("",)))):
            self.file(name, content)
            self.assert_fails(3, f"{name}: .*no text", "text", name)
        self.file("a.c", b"int a;\n")
        self.assertEqual(self.run_command("text", "a.c").stdout, b"int a;\n")
        self.file("README", contents["pdf"])
        self.assertIn(b"Leaflet", self.run_command("text", "README").stdout)
        self.file("a.txt", bytes((7, 0, 9, 19, 0, 0, 200)) * 99)
        self.assert_fails(3, "a.txt: the file holds no text", "text", "a.txt")
        self.file("a.docx", contents["docx"][:200])
        self.assert_fails(3, "a.docx: .*the document is damaged", "text", "a.docx")

    def test_files_given_as_urls(self):
        name = "a b#?;%41\u00e9.txt"
        self.file(name, b"<p>Words</p>")
        self.file("a b", b"Words")
        url = (self.folder.resolve() / name).as_uri()
        for given in (url, url.replace("file:", "FILE:"), url.replace("//", "//LocalHost", 1), url + "#page=2", f"file://{self.folder}/a b"):
            self.assertIn(b"Words", self.run_command("text", given).stdout, given)
        output = url.replace(".txt", ".webloc")
        for command, *rest in (("metadata",), ("decode",), ("strip",), ("strip", "--bodies", "b"), ("tags",), ("page",), ("links",)):
            done = self.run_command(command, url, *rest)
            self.assertEqual((done.returncode, done.stdout), (0, self.run_command(command, name, *rest).stdout), command)
        self.assertEqual(self.run_command("location", "--create", url, "-o", output).returncode, 0)
        self.assertTrue((self.folder / name.replace(".txt", ".webloc")).exists())
        self.assertEqual(self.answer("location", output), [url])
        self.assertEqual(self.answer("url", url)[0]["URL"], url)
        self.assert_fails(7, f"{self.folder}/missing: there is no such file", "pdf", f"file://{self.folder}/missing")
        for message, bad in (("is a file of another machine", "file://server/a"), ("names no file", "file://"), ("names no file", "file:///a%00b")):
            for arguments in (["text", bad], ["location", bad], ["topdf", "a", "-o", bad]):
                self.assert_fails(1, message, *arguments)

    def test_examples_of_the_manual(self):
        self.file("letter.docx", (DOCUMENTS / "letter.docx").read_bytes())
        self.file("report.pdf", documents.pdf())
        self.file("page.html", b"caf\xe9")
        lines = re.findall(r"^\.Dl \$ (.*)$", MANUAL.read_text("utf-8"), re.MULTILINE)
        ways = [line.partition(" | jq ")[0] for line in lines if "curl" not in line]
        self.assertGreaterEqual(len(ways), 8)
        self.environment["PATH"] = f"{os.path.dirname(COMMAND)}:{os.environ['PATH']}"
        for way in ways:
            done = subprocess.run(way, shell=True, env=self.environment, cwd=self.folder, capture_output=True, timeout=60, check=False)
            is_silent = " -o " in way or " > " in way
            self.assertEqual((done.returncode, not done.stdout), (0, is_silent), (way, done.stderr))
        self.assertEqual((self.folder / "page-utf8.html").read_bytes(), "caf\u00e9".encode())

    def test_text_is_laid_out_for_people(self):
        page = (b"<p>A&nbsp;<ul> <li>&#128512;<li>&epsilon; </ul><table><tr><td>1<td>2<tr><td>3</table>"
                b"<pre>\n\nx  \n\n\ny</pre><p>&copy")
        done = self.run_command("text", "-", input=page)
        self.assertEqual(done.stdout.decode(), "A\n\n\U0001f600\n\u03b5\n\n1 2\n3\n\n\nx\n\n\ny\n\n\u00a9\n")

    def test_control_characters_never_reach_a_terminal(self):
        self.file("plain.txt", b"a\x1b[2J\tb\r\nc\x07\rd\xc2\x9b\n")
        self.file("page.html", b"<pre>a\x1b]0;x\x07b")
        self.file("title.html", b"<title>a\xc2\x9b2J\x7f</title>")
        shown_texts = (
            ("text", "plain.txt", "a\ufffd[2J\tb\nc\ufffd\nd\ufffd\n"),
            ("text", "page.html", "a\ufffd]0;x\ufffdb\n"),
            ("decode", "page.html", "<pre>a\ufffd]0;x\ufffdb"),
            ("page", "title.html", '{"Title":"a\ufffd2J\ufffd","NormalizedTitle":"a\ufffd2J\ufffd","IndexedTitle":"a\ufffd2J\ufffd","Feed":false,"MetaAttributes":{}}\n'),
        )
        self.assertEqual(self.run_command("text", "a\x9b2J\x1b\x80\x9f\xa0").stderr.decode(), "quiverleaf: a?2J???\xa0: there is no such file\n")
        self.assertEqual(self.run_command("text", b"\xc2A\xc2").stderr, b"quiverleaf: \xc2A\xc2: there is no such file\n")
        for command, name, shown in shown_texts:
            raw = self.run_command(command, name).stdout
            self.assertRegex(raw, rb"\x1b|\x7f")
            ours, terminal = os.openpty()
            tty.setraw(terminal)
            done = self.run_command(command, name, capture_output=False, stdout=terminal)
            os.close(terminal)
            self.assertEqual((done.returncode, os.read(ours, 1000).decode()), (0, shown), name)
            os.close(ours)

    def test_dates_are_of_the_zone_of_the_environment(self):
        self.environment["TZ"] = "Europe/Berlin"
        cases = {
            "24.12.2006": "2006-12-23T23:00:00Z",
            "le 3 juillet 2005 \u00e0 14h30": "2005-07-03T12:30:00Z",
            "Sun Nov  6 08:49:37 1994": "1994-11-06T07:49:37Z",
            "2006-12-24T18:30:00.5-05:00": "2006-12-24T23:30:00.5Z",
        }
        self.assertEqual(self.answer("date", *cases), list(cases.values()))
        done = self.run_command("date", "24.12.2006", "Christmas", "")
        self.assertEqual((done.returncode, json.loads(done.stdout)), (3, ["2006-12-23T23:00:00Z", None, None]))
        self.assertEqual(done.stderr, b"quiverleaf: Unknown date: Christmas\n")
        self.assertEqual(self.run_command("date", "\x1b[2J").stderr, b"quiverleaf: Unknown date: ?[2J\n")
        done = self.run_command("date", "--plist", "--http", "24.12.2006", "Sun, 06 Nov 1994 08:49:37 GMT", "Fri, 31 Dec 9999 23:59:59 EST")
        self.assertEqual((done.returncode, done.stderr), (3, b""))
        self.assertEqual(plistlib.loads(done.stdout), ["", datetime.datetime(1994, 11, 6, 8, 49, 37), ""])

    def test_encodings_of_names_and_pages(self):
        known, unknown = self.answer("charset", "iso_8859-1", "no such name")
        self.assertEqual((known["Encoding"], known["CFStringEncoding"], known["NSStringEncoding"]), ("ISO-8859-1", 0x201, 5))
        self.assertEqual(unknown, {"Name": "no such name", "Available": False})
        for name, encoding in (("koi8-u", "KOI8-U"), ("tis-620", "windows-874"), ("gb18030", "GB18030")):
            self.assertEqual(self.answer("charset", name)[0]["Encoding"], encoding)

        text = "<meta charset=koi8-r>\u041f\u0440\u0438\u0432\u0435\u0442\n"
        self.file("page", text.encode("koi8-r"))
        done = self.run_command("decode", "page")
        self.assertEqual((done.returncode, done.stdout.decode()), (0, text))
        self.assertEqual(done.stderr, b"quiverleaf: page: declares koi8-r, read as KOI8-R\n")
        answer = self.answer("decode", "--json", "--encoding", "utf-8", "page")
        self.assertEqual((answer["String"], answer["Declared"], answer["Encoding"]), (text, "koi8-r", "KOI8-R"))
        plain = "\u041f\u0440\u0438\u0432\u0435\u0442, \u043c\u0438\u0440"
        for codec, *options in (("cp866", "--encoding", "ibm866"), ("cp866", "--default", "866"), ("utf-16",), ("utf-8",)):
            with self.subTest(codec=codec, options=options):
                done = self.run_command("decode", *options, "-", input=plain.encode(codec))
                self.assertEqual(done.stdout.decode(), plain)
                self.assertRegex(done.stderr, rb"\Aquiverleaf: standard input: declares nothing, read as [^\n]+\n\Z")
        self.file("latin", b"caf\xe9")
        self.assert_fails(3, "latin: is no text in any encoding", "decode", "--default", "utf-8", "latin")

    def test_urls_without_a_helper(self):
        good, bad, hopeless = self.answer("url", "--base", "https://h/x/", "HTTP://a.org:80/b.PNG?c=1&c=2#d", "ttp://b/\u00e9 f", "")
        self.assertEqual((good["URL"], good["Simplified"]), ("HTTP://a.org:80/b.PNG?c=1&c=2#d", "http://a.org/b.PNG?c=1&c=2"))
        self.assertEqual((good["QueryParams"], good["NumberOfQueryParams"]), ({"c": "2"}, 2))
        self.assertEqual((good["Components"]["Port"], good["Components"]["HostComponents"]), (80, ["a", "org"]))
        self.assertTrue(good["Kinds"]["HTTP"] and good["Types"]["Image"] and not good["Kinds"]["File"])
        self.assertEqual((bad["URL"], bad["Repaired"], bad["Resolved"]), (None, *["http://b/%C3%A9%20f"] * 2))
        self.assertNotIn("Components", bad)
        self.assertEqual((hopeless["URL"], hopeless["Repaired"], hopeless["Resolved"]), (None, None, "https://h/x/"))
        link = "/s?a=1&copy=2&amp;u=x%26y%2Bz"
        typed, host = self.answer("url", "--base", "h.org", link, "example.org")
        self.assertEqual((typed["Normalized"], typed["Repaired"], typed["Resolved"]), (link, link, "http://h.org" + link))
        self.assertEqual((host["Repaired"], host["Resolved"]), ("http://example.org", "http://h.org/example.org"))
        marked = self.answer("url", "--base", "h.org", "--markup", "/s?a=1&amp;u=x%26y%2Bz")[0]
        self.assertEqual((marked["Normalized"], marked["Resolved"]), ("/s?a=1&u=x%26y%2Bz", "http://h.org/s?a=1&u=x%26y%2Bz"))
        plist = plistlib.loads(self.run_command("url", "--plist", "a b").stdout)
        self.assertEqual((plist[0]["Repaired"], "URL" in plist[0]), ("a%20b", False))
        self.assert_fails(2, "No helper is registered", "ping", "--no-start")

    def test_all_that_is_told_of_urls(self):
        address, text = "http://u:p@www.h.org:8/a/../b.mp3;x?q=%3F#f", "a-%20%41 b"
        url, other = self.answer("url", address, text)
        self.assertEqual(url["Standardized"], "http://u:p@www.h.org:8/b.mp3;x?q=%3F#f")
        self.assertEqual(url["Components"], {
            "Scheme": "http", "ResourceSpecifier": address.partition(":")[2], "User": "u", "Password": "p", "Host": "www.h.org",
            "Path": "/a/../b.mp3", "ParameterString": "x", "Query": "q=%3F", "Fragment": "f", "LastPathComponent": "b.mp3",
            "PathExtension": "mp3", "BaseDirectory": "/a/../", "InvertedHost": "org.h.www", "Port": 8, "HostComponents": ["www", "h", "org"],
        })  # fmt: skip
        self.assertEqual(other["Escaped"], {"Standard": "a-%2520%2541%20b", "ASCII": "a%2d%2520%2541%20b"})
        self.assertEqual(other["Unescaped"], {"Standard": "a- %41 b", "ASCII": "a- A b"})
        page = {"HTTP", "Downloadable", "Loadable", "WebKit", "RemoteWebKit"}
        cases = {
            "http://h/a.mp3": (page, {"Multimedia", "Audio", "Binary"}),
            "https://www.bing.com/search?q=a": (page | {"SearchEngine"}, set()),
            "feed://h/a.xml": (page - {"HTTP", "Downloadable"} | {"Feed"}, {"Markup"}),
            "ftp://h/a.tar": ({"FTP", "Downloadable", "Loadable"}, {"Archive", "Binary"}),
            "file:///none/a.rtf": ({"File", "WebKit"}, {"RichText", "Binary"}),
            "mailto:a@b": ({"Mail"}, set()),
            "news:a": ({"News"}, set()),
            "javascript:a": ({"JavaScript"}, set()),
            "applescript:a": ({"AppleScript"}, set()),
            "x://h/a.png": (set(), {"Image", "Binary"}),
            "x://h/a.exe": (set(), {"Executable", "Binary"}),
            "x://h/a.mov": (set(), {"Multimedia", "Video", "Binary"}),
            "x://h/a.swf": (set(), {"Multimedia", "Embedded", "Binary"}),
            "x://h/a.doc": (set(), {"Office", "Binary"}),
        }
        for (given, expected), answer in zip(cases.items(), self.answer("url", *cases)):
            found = tuple({name for name, is_so in answer[table].items() if is_so} for table in ("Kinds", "Types"))
            self.assertEqual(found, expected, given)

    def test_files_that_give_no_answer(self):
        self.file("empty", b"")
        self.file("cut.pdf", b"%PDF-1.4\n1 0 obj\n<< /Type")
        self.file("text.pdf", b"no PDF at all")
        self.file("empty.pdf", b"")
        self.file("empty.txt", b"")
        self.file("letter.hwp", b"PK")
        self.file("strange.qqq", bytes(range(1, 200, 3)))
        os.mkfifo(self.folder / "fifo")
        (self.folder / "loop").symlink_to("loop")
        large = self.folder / "large"
        large.touch()
        os.truncate(large, 1 << 30)
        (self.folder / "folder.pdf").mkdir()
        cases = [
            (7, "metadata", "missing", "missing: there is no such file"),
            (7, "metadata", ".", "is a folder"),
            (3, "metadata", "empty", "empty: the file is empty"),
            (3, "metadata", "empty.pdf", "empty.pdf: the file is empty"),
            (3, "metadata", "empty.txt", "empty.txt: the file is empty"),
            (3, "metadata", "cut.pdf", "cut.pdf: the PDF is damaged"),
            (8, "metadata", "text.pdf", "is no PDF"),
            (7, "metadata", "folder.pdf", "is a folder"),
            (7, "metadata", "fifo", "is no regular file"),
            (7, "metadata", "loop", "cannot be read: Too many levels"),
            (8, "metadata", "strange.qqq", "its type is unknown"),
            (8, "metadata", "letter.hwp", "no importer reads files of this type .*hwp"),
            (7, "pdf", "missing\nline", "missing.line: there is no such file"),
            (7, "pdf", "text.pdf/x", "no such file"),
            (7, "pdf", "folder.pdf", "is a folder"),
            (8, "pdf", "text.pdf", "is no PDF"),
            (3, "pdf", "cut.pdf", "the PDF is damaged"),
            (3, "pdf", "large", "is larger than"),
            (7, "pdf", "/proc/self/mem", "cannot be read"),
            (7, "text", "missing", "there is no such file"),
            (3, "text", "empty", "empty: the file is empty"),
            (3, "decode", "empty", "empty: the file is empty"),
            *((3, command, str(TOP / "examples" / "leaf.jpg"), "leaf.jpg: the file holds no text") for command in ("tags", "strip", "page", "links")),
        ]
        for code, command, name, message in cases:
            with self.subTest(command=command, name=name):
                self.assert_fails(code, message, command, name)

    def test_a_file_that_may_not_be_read(self):
        os.chmod(self.file("closed.pdf", documents.pdf()), 0)
        for command in ("metadata", "pdf"):
            self.assert_fails(7, "cannot be read: permission denied", command, "closed.pdf", preexec_fn=obey_permissions)

    def test_wrong_command_lines(self):
        cases = [
            ("no command",),
            ("unknown command 'frobnicate'", "frobnicate"),
            ("metadata needs FILE", "metadata"),
            *(("needs a file with a name, not standard input", command, "-") for command in ("metadata", "webarchive", "fork", "poster")),
            ("'b' is too much", "pdf", "a", "b"),
            ("empty", "pdf", ""),
            ("unknown option '--colour'", "pdf", "--colour", "a"),
            ("unknown option '-\u00e9h'", "pdf", "-\u00e9h"),
            ("unknown option '-hp'", "pdf", "-hp"),
            ("unknown option '--attributed'", "--attributed", "pdf", "a"),
            ("-o needs --attributed", "pdf", "-o", "out.rtfd", "a"),
            ("-o needs --attributed and the name of a folder", "pdf", "--attributed", "-o", "", "a"),
            ("'--p' may be --pretty or --plist", "metadata", "--p", "a"),
            *((f"'{pages}' names no pages", "pdf", "--pages", pages, "a") for pages in ("", "0", "-3", "2x", "1-3x", "1-x", "1--2", "99999999999")),
            ("'3-2' ends before it begins", "pdf", "--pages", "3-2", "a"),
            ("exclude each other", "pdf", "--password", "x", "--password-file", "x", "a"),
            ("exclude each other", "pdf", "--text", "--attributed", "a"),
            ("either the PDF or the password", "pdf", "--password-file", "-", "-"),
            ("'--pretty' takes no value", "pdf", "--pretty=no", "a"),
            ("unknown option '--attributed'", "metadata", "--attributed", "a"),
            ("'--timeout' needs a value", "ping", "--timeout"),
            ("'x' is not a value of --encode, which is standard, high or table", "entities", "--encode", "x", "a"),
            *(("cannot be joined", "strip", *options, "a") for options in (
                ("--tag", "a", "--objects"), ("--attributes", "a", "--bodies", "b"), ("--except", "a", "--tag", "a"))),
            *((f"'{name}' is no name of a tag for --{option}", "strip", f"--{option}", name, "missing")
              for option, name in (("tag", ""), ("attributes", "a b"), ("tag", "\u00e9"), ("bodies", ""), ("except", "<"))),
            ("charset needs NAME", "charset"),
            *(("--simple takes none of", "text", "--simple", option, "a")
              for option in ("--reformat", "--no-junk", "--google-tags", "--plain-ascii")),
            ("'foo' after --encoding is no known encoding", "decode", "--encoding", "foo", "a"),
            ("'x-mac-tibetan' after --default is an encoding that", "decode", "--default", "x-mac-tibetan", "a"),
            *(("is no absolute URL", *arguments, "a/b", "c") for arguments in (("url", "--base"), ("feed", "--url"), ("html2rtfd", "-o", "a", "--base"))),
            ("--spotlight needs --text", "image", "--spotlight", "a"),
            *((f"'--{option}' does nothing for {mode}", *arguments, f"--{option}", *(("3",) if option in ("timeout", "wait") else ()))
              for options, mode, *arguments in (
                  ("plist pretty", "text", "text", "a"),
                  ("wait no-start", "date", "date", "1"),
                  ("no-start timeout wait pretty plist", "--create", "webarchive", "--create", "-o", "a", "a"),
                  ("timeout pretty plist", "--create", "location", "--create", "http://h/", "-o", "a"),
                  ("no-start wait pretty plist", "--cover", "poster", "--cover", "-o", "a.png", "a"),
                  ("pretty plist", "--extract", "fork", "--extract", "TEXT", "1", "-o", "a", "a"),
                  ("pretty plist", "--opml", "feed", "--opml", "a"),
                  ("pretty plist", "--html", "feed", "--html", "a"),
                  ("pretty plist", "--text", "pdf", "--text", "a"),
                  ("pretty plist", "-o", "pdf", "--attributed", "-o", "x", "a"),
                  ("no-text file-facts pretty plist", "--text-only", "metadata", "--text-only", "a"),
                  ("pretty", "decode without --json", "decode", "a"),
                  ("pretty", "--plist", "page", "--plist", "a"),
              ) for option in options.split()),
            ("'--plist' does nothing for text", "--plist", "text", "a"),
            *(("not for --encode", "entities", "--encode", "high", option, "a") for option in ("--numeric", "--no-standard", "--non-umlauted")),
            *((f"'{value}' is no number", "ping", "--timeout", value) for value in ("0", "-1", "x", "1s", "nan", "1e9", "")),
        ]
        for message, *arguments in cases:
            with self.subTest(arguments):
                self.assert_fails(1, message, *arguments)

    def test_ping_and_stop(self):
        self.assert_fails(2, "No helper is registered", "ping", "--no-start")
        self.assert_fails(2, "", "metadata", "--no-start", "/etc/hostname")
        answer = self.answer("ping")
        self.assertEqual(answer["Name"], "QuiverleafHelper_2.0pb8build4")
        self.assertEqual(os.readlink(f"/proc/{answer['ProcessIdentifier']}/exe").rpartition("/")[2], "quiverleaf-helper")
        self.assertEqual(self.answer("ping", "--no-start"), answer)
        self.assertEqual(self.answer("status"), answer)
        self.assertRegex(answer["Version"], r"\A\d+\.\d+\.\d+\Z")
        self.assertEqual(answer["Path"], os.readlink(f"/proc/{answer['ProcessIdentifier']}/exe"))
        age = datetime.datetime.now(datetime.timezone.utc) - datetime.datetime.fromisoformat(answer["Since"].replace("Z", "+00:00"))
        self.assertLess(age, datetime.timedelta(minutes=5))
        # Of one without a record nothing else is known.
        next(pathlib.Path(self.environment["QUIVERLEAF_RUNTIME_DIR"]).glob("*.record")).unlink()
        known = self.answer("ping", "--no-start")
        self.assertEqual((known["ProcessIdentifier"], known["Name"]), (answer["ProcessIdentifier"], answer["Name"]))
        self.assertEqual({key: value for key, value in known.items() if value}.keys(), {"ProcessIdentifier", "Name"})
        done = self.run_command("stop")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        self.assert_fails(2, "no helper", "stop")
        self.assert_fails(2, "no helper is registered", "status")

    def test_status_of_a_helper_that_works_and_dies(self):
        process = self.answer("ping")["ProcessIdentifier"]
        page = self.file("page.pdf", documents.pdf(("Words",) * 2000))
        calls, working = [], None
        while not working:
            if all(call.poll() is not None for call in calls):
                begun = [subprocess.Popen([COMMAND, "pdf", page], env=self.environment, stdout=subprocess.PIPE) for _ in range(3)]
                calls.extend(begun)
            working = self.answer("status").get("Working")
        os.kill(process, signal.SIGKILL)
        self.assertEqual(working["Selector"], "attributed:stringWithPDF:")
        self.assertIn(working["ProcessIdentifier"], [call.pid for call in calls])
        for call in calls:
            call.communicate()
        self.assertLessEqual(sorted((call.returncode for call in calls), reverse=True)[:2], [5, 0])

    def test_status_tells_at_what_the_last_helper_died(self):
        page = self.file("page.pdf", documents.pdf(("Words",) * 2000))
        code = None
        while code != 5:
            # It may have answered before it is found at work or killed.
            call = subprocess.Popen([COMMAND, "pdf", page], env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            while call.poll() is None:
                state = json.loads(self.run_command("status").stdout or "{}")
                if "Working" in state:
                    os.kill(state["ProcessIdentifier"], signal.SIGKILL)
                    break
            call.communicate()
            code = call.returncode
        done = self.run_command("status")
        self.assertEqual((done.returncode, done.stdout), (2, b""))
        lines = done.stderr.decode().splitlines()
        self.assertEqual(lines[0], "quiverleaf: no helper is registered")
        self.assertIn("the last one ended while it worked on attributed:stringWithPDF:", lines[1])


if __name__ == "__main__":
    unittest.main()
