#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Makes the static web site: the pages of packaging/site and of the documents, the page to try, and the packages.

Usage: site.py DOCUMENTS SITE PACKAGES. The packages, and the page for the browser in build/web, are included if they
have been made. Ends with an error if a link within the site has no target.
"""
import hashlib
import html.parser
import pathlib
import re
import shutil
import subprocess
import sys
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGES = ("user-guide.md", "boxes.md", "protocols.md", "receiver.md", "device.md")
STYLE = "manual.css"


class Links(html.parser.HTMLParser):
    """The links of a page, and its anchors."""

    def __init__(self, page):
        super().__init__()
        self.targets, self.places = [], set()
        self.feed(page.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src"):
                self.targets.append(value)
            if name == "id" or (tag == "a" and name == "name"):
                self.places.add(value)


def link_of(match):
    """A link between documents becomes a link to their pages; a link to a file outside the site becomes plain text."""
    text, target = match[1], match[2]
    name, _, place = target.partition("#")
    if name in PAGES or name == "index.md":
        return f"[{text}]({name.removesuffix('.md')}.html{'#' + place if place else ''})"
    if not name or "://" in name or name.startswith("images/") or name in ("try/", STYLE):
        return match[0]
    return text


def make_page(markdown, target, title):
    text = re.sub(r"(?<!!)\[([^\]]*)\]\(([^)\s]*)\)", link_of, markdown)
    subprocess.run(["pandoc", "--standalone", "--from", "gfm", "--to", "html5", "--css", STYLE, "--metadata",
                    f"pagetitle={title}", "--metadata", "lang=en", "--output", target],
                   input=text, text=True, check=True)


def downloads(packages):
    files = sorted(file for file in packages.iterdir() if file.is_file()) if packages.is_dir() else []
    if not files:
        return "## Downloads\n\nNone yet.\n"
    rows = [f"| <a href=\"downloads/{file.name}\">{file.name}</a> | {file.stat().st_size / 1e6:.2f} MB | "
            f"`{hashlib.sha256(file.read_bytes()).hexdigest()}` |" for file in files]
    return "\n".join(["## Downloads", "", "| file | size | SHA-256 |", "|---|---|---|", *rows]) + "\n"


def broken_links(site):
    pages = {page: Links(page) for page in site.glob("*.html")}
    for page, links in pages.items():
        for target in links.targets:
            parts = urllib.parse.urlsplit(target)
            if parts.scheme:
                continue
            file = (page.parent / urllib.parse.unquote(parts.path)) if parts.path else page
            if file.is_dir():
                file /= "index.html"
            if not file.is_file():
                yield f"{page.name}: {target}: there is no such file"
            elif parts.fragment and file in pages and urllib.parse.unquote(parts.fragment) not in pages[file].places:
                yield f"{page.name}: {target}: there is no such place"


def main():
    documents, site, packages = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(site, ignore_errors=True)
    site.mkdir(parents=True)
    shutil.copytree(documents / "images", site / "images")
    shutil.copy(ROOT / "packaging" / "manual.css", site / STYLE)
    index = (ROOT / "packaging" / "site" / "index.md").read_text(encoding="utf-8")
    page = ROOT / "build" / "web"
    if (page / "index.html").is_file():
        shutil.copytree(page, site / "try", ignore=shutil.ignore_patterns("CMake*", "*.ninja", "*.cmake", ".*", "*.a"))
        index += "## Try\n\n[The program in your browser](try/), with a receiver in the same page.\n\n"
    if packages.is_dir():
        shutil.copytree(packages, site / "downloads", ignore=shutil.ignore_patterns("work"))
    make_page(index + downloads(packages), site / "index.html", "Toravane")
    for name in PAGES:
        markdown = (documents / name).read_text(encoding="utf-8")
        make_page(markdown, site / name.replace(".md", ".html"), markdown.split("\n", 1)[0].lstrip("# "))
    broken = list(broken_links(site))
    print(*broken, sep="\n", end="\n" if broken else "")
    print(f"site.py: {len(list(site.glob('*.html')))} pages in {site}, {len(broken)} broken links")
    return 1 if broken else 0


sys.exit(main())
