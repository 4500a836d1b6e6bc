# SPDX-License-Identifier: MIT
"""The reasons for which a release is refused, and links of the web site without a target."""

import shutil
import subprocess
from pathlib import Path

import pytest

Root = Path(__file__).resolve().parents[2]
Files = ("CMakeLists.txt", "CHANGELOG.md", "packaging/release.sh", "packaging/debian/changelog",
         "packaging/toravane.metainfo.xml", "packaging/toravane-web.metainfo.xml")


def git(folder, *arguments):
    subprocess.run(["git", "-c", "user.name=A", "-c", "user.email=a@a.example", *arguments], cwd=folder, check=True,
                   capture_output=True)


@pytest.fixture
def tree(tmp_path):
    """The files that a release checks, in a separate repository."""
    for file in Files:
        (tmp_path / file).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(Root / file, tmp_path / file)
    changes = (tmp_path / "CHANGELOG.md").read_text()
    (tmp_path / "CHANGELOG.md").write_text("## [2.20]\n" + changes[changes.index("\n- "):])
    git(tmp_path, "init")
    commit(tmp_path)
    return tmp_path


def commit(tree):
    git(tree, "add", "--all")
    git(tree, "commit", "--message", "x")


def release(tree):
    done = subprocess.run([tree / "packaging/release.sh", "--dry-run"], capture_output=True, text=True)
    return done.returncode, done.stdout + done.stderr


def test_a_release_of_a_whole_tree_goes_on(tree):
    assert release(tree) == (0, "Version 2.20 can be released\n")


@pytest.mark.parametrize("file, old, new, reason", [
    ("CHANGELOG.md", "## [2.20]", "## [2.19]", "CHANGELOG.md has no entry for version 2.20"),
    ("CHANGELOG.md", "## [2.20]", "## [Unreleased]\n- x\n\n## [2.20]", "CHANGELOG.md has entries that belong to no version"),
    ("packaging/debian/changelog", "(2.20)", "(2.19)", "packaging/debian/changelog does not begin with version 2.20"),
    ("packaging/toravane.metainfo.xml", 'version="2.20"', 'version="2.19"',
     "packaging/toravane.metainfo.xml does not name version 2.20"),
    ("packaging/toravane-web.metainfo.xml", 'version="2.20"', 'version="2.19"',
     "packaging/toravane-web.metainfo.xml does not name version 2.20"),
])
def test_a_release_without_an_entry_is_refused(tree, file, old, new, reason):
    text = (tree / file).read_text()
    assert old in text
    (tree / file).write_text(text.replace(old, new))
    assert release(tree) == (1, "release.sh: the tree has changes that are not committed\n")
    commit(tree)
    assert release(tree) == (1, f"release.sh: {reason}\n")


def test_a_release_is_made_once(tree):
    git(tree, "tag", "v2.20")
    assert release(tree) == (1, "release.sh: version 2.20 is released already\n")


def test_links_of_the_site(tmp_path):
    documents = tmp_path / "docs"
    shutil.copytree(Root / "docs", documents)
    make = [Root / "packaging/site.py", documents, tmp_path / "site", tmp_path / "none"]
    assert subprocess.run(make, capture_output=True, text=True).returncode == 0
    with open(documents / "receiver.md", "a") as page:
        page.write("\n[a](user-guide.md#no-such-place) ![b](images/none.png)\n")
    broken = subprocess.run(make, capture_output=True, text=True)
    assert broken.returncode == 1
    assert "receiver.html: user-guide.html#no-such-place: there is no such place\n" in broken.stdout
    assert "receiver.html: images/none.png: there is no such file\n" in broken.stdout
