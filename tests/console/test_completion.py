# SPDX-License-Identifier: MIT
"""Completion scripts, manual page and --help, which are all made from one description."""

import re
import subprocess

import pytest
from streams import Build, environment, run

Shells = ["bash", "zsh", "fish"]


def script(shell):
    return run("completion", shell, check=0).stdout.decode()


def commands():
    text = run("--help", check=0).stdout.decode()
    listed = re.search(r"(?i)subcommands:\n(.*)", text, re.S)[1]
    return re.findall(r"^  (\w+)", listed, re.M)


def options(command):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]+", run(command, "--help", check=0).stdout.decode()))


def manual():
    page = (Build / "toravanectl.1").read_text()
    shown = subprocess.run(["groff", "-man", "-Tascii", "-P-cbou", "-ww", "-rLL=200n"], input=page, text=True,
                           capture_output=True, timeout=30)
    assert shown.returncode == 0 and shown.stderr == "", shown.stderr
    return shown.stdout


def complete_in_bash(line):
    words = line.split(" ")
    text = (f"{script('bash')}\nCOMP_WORDS=({' '.join(repr(word) for word in words)})\n"
            f"COMP_CWORD={len(words) - 1}\n_toravanectl\nprintf '%s\\n' \"${{COMPREPLY[@]}}\"")
    path = f"{Build}:{environment()['PATH']}"
    done = subprocess.run(["bash", "-c", text], capture_output=True, text=True, timeout=30,
                          env=environment() | {"PATH": path})
    assert done.stderr == ""
    return done.stdout.split()


def test_every_command_and_option_is_everywhere():
    scripts, page = {shell: script(shell) for shell in Shells}, manual()
    names = commands()
    assert {"monitor", "log", "convert", "date", "relay", "probe", "completion"} <= set(names)
    for name in names:
        assert re.search(rf"^ +{name}\b", page, re.M), name
        for shell, text in scripts.items():
            assert re.search(rf"\b{name}\b", text), (shell, name)
        for option in options(name):
            assert option in page, option
            for shell in ("bash", "zsh"):
                assert option in scripts[shell], (shell, name, option)
            assert f"-l {option[2:]}" in scripts["fish"], (name, option)


def test_bash_completes():
    assert complete_in_bash("toravanectl mon") == ["monitor"]
    assert "--correct-dates" in complete_in_bash("toravanectl monitor --corr")
    assert complete_in_bash("toravanectl --json completion f") == ["fish"]
    assert complete_in_bash("toravanectl --rate ") == []
    assert "--json" in complete_in_bash("toravanectl probe --js")


def test_bash_completes_files(tmp_path):
    (tmp_path / "some.log").write_text("")
    assert complete_in_bash(f"toravanectl convert {tmp_path}/so") == [f"{tmp_path}/some.log"]


def test_fish_completes(tmp_path):
    path = tmp_path / "toravanectl.fish"
    path.write_text(script("fish"))

    def complete(line):
        done = subprocess.run(["fish", "--no-config", "-c", f"source {path}; complete -C '{line}'"],
                              capture_output=True, text=True, timeout=30, env=environment() | {"HOME": str(tmp_path)})
        assert done.returncode == 0 and done.stderr == "", done.stderr
        return [row.split("\t")[0] for row in done.stdout.splitlines()]

    assert complete("toravanectl mon") == ["monitor"]
    assert complete("toravanectl monitor --corr") == ["--correct-dates"]
    assert complete("toravanectl completion z") == ["zsh"]


def test_zsh_accepts_its_script(tmp_path):
    path = tmp_path / "_toravanectl"
    path.write_text(script("zsh"))
    done = subprocess.run(["zsh", "-f", "-n", path], capture_output=True, text=True, timeout=30)
    assert (done.returncode, done.stderr) == (0, "")
    loaded = subprocess.run(["zsh", "-f", "-c", f"autoload -U compinit; compinit -D -u; source {path}; "
                             "print $_comps[toravanectl]"], capture_output=True, text=True, timeout=30)
    assert (loaded.stdout, loaded.stderr) == ("_toravanectl\n", "")


def test_a_wrong_shell_is_wrong_usage():
    run("completion", "tcsh", check=2)
    run("completion", check=2)
    run("completion", "bash", "--json", check=2)


def test_the_manual_has_its_sections():
    page = manual()
    for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "EXIT STATUS", "ENVIRONMENT", "FILES",
                    "EXAMPLES"):
        assert re.search(rf"^{heading}$", page, re.M), heading
    for status in ("0", "1", "2", "3", "6", "7", "8", "9", "10", "11", "130"):
        assert re.search(rf"^ +{status} ", page, re.M), status


@pytest.mark.parametrize("name", ["probe", "monitor"])
def test_help_of_a_command_in_both_forms(name):
    assert run(name, "--help", check=0).stdout == run("help", name, check=0).stdout != b""
