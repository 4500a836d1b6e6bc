# SPDX-License-Identifier: MIT
"""The device's image, read by independent readers, and faults that the build must refuse.

Needs the presets device and native to be built.
"""

import json
import os
import pathlib
import re
import shlex
import subprocess

import pefile
import pytest

Root = pathlib.Path(__file__).resolve().parents[2]
Build = Root / "build/device"
Tools = pathlib.Path(os.environ.get("TORAVANE_TOOLS", Root / "build/native"))  # where the tools were built
ImagePath = Build / "toravane.exe"
Libraries = {"COREDLL.dll": "coredll", "commctrl.dll": "commctrl"}
Base, Elsewhere = 0x10000, 0x110000
Menu, Dialog, PackedDialog = 4, 5, 256  # types of resources


def output_of(*command, cwd=Build):
    """A program's output; it must succeed without a warning."""
    done = subprocess.run(list(map(str, command)), cwd=cwd, capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    assert done.stderr == ""
    return done.stdout


def resources_of(path):
    """Every resource's bytes by type, name and language."""
    image = pefile.PE(str(path))
    return {
        (kind.id or str(kind.name), name.id or str(name.name), language.id):
            image.get_data(language.data.struct.OffsetToData, language.data.struct.Size)
        for kind in image.DIRECTORY_ENTRY_RESOURCE.entries
        for name in kind.directory.entries
        for language in name.directory.entries
    }


def unpacked(packed):
    """A dialog's template of the form in which the image keeps it: a reader of its own."""
    size, place, flags, whole = int.from_bytes(packed[:2], "little"), 2, "", b""
    while len(whole) < size:
        if not flags:
            flags, place = f"{packed[place]:08b}", place + 1
        is_byte, flags = flags[-1] == "1", flags[:-1]
        if is_byte:
            whole, place = whole + packed[place:place + 1], place + 1
        else:
            repeat, place = int.from_bytes(packed[place:place + 2], "little"), place + 2
            for _ in range(repeat // 2048 + 3):
                whole += whole[-(repeat % 2048) - 1:][:1]
    assert len(whole) == size and place == len(packed)
    return whole


def resources_of_image():
    """As the program sees them: dialogs' templates unpacked and of the system's type."""
    return {
        (Dialog if kind == PackedDialog else kind, name, language): unpacked(data) if kind == PackedDialog else data
        for (kind, name, language), data in resources_of(ImagePath).items()
    }


@pytest.fixture(scope="module")
def image():
    return pefile.PE(str(ImagePath))


# ---- Readers ----------------------------------------------------------------------------------------------


def test_file_names_the_format():
    assert output_of("file", "--brief", ImagePath).startswith("PE32 executable (Windows CE) ARM, for MS Windows")


def test_pefile_finds_nothing_wrong(image):
    assert image.get_warnings() == []
    assert image.verify_checksum()
    assert image.FILE_HEADER.Machine == 0x1C0
    assert image.FILE_HEADER.TimeDateStamp == 0
    assert image.OPTIONAL_HEADER.Subsystem == 9
    assert image.OPTIONAL_HEADER.ImageBase == Base
    assert image.get_section_by_rva(image.OPTIONAL_HEADER.AddressOfEntryPoint).Name == b".text\0\0\0"


def test_readpe_reads_all_of_it():
    text = output_of("readpe", ImagePath)
    assert re.search(r"Machine: +0x1c0 IMAGE_FILE_MACHINE_ARM\n", text)
    assert re.search(r"Subsystem required: +0x9 \(IMAGE_SUBSYSTEM_WINDOWS_CE_GUI\)\n", text)
    assert re.findall(r"Name: +(\.\w+)\n", text) == [".text", ".rdata", ".data", ".idata", ".rsrc", ".reloc"]


def test_imports_are_in_the_lists(image):
    assert {entry.dll.decode() for entry in image.DIRECTORY_ENTRY_IMPORT} == set(Libraries)
    for entry in image.DIRECTORY_ENTRY_IMPORT:
        listed = (Root / f"platform/device/{Libraries[entry.dll.decode()]}.exports").read_text()
        allowed = {line.split(";")[0].split()[-1] for line in listed.splitlines() if line.split(";")[0].split()}
        assert {call.name.decode() for call in entry.imports} <= allowed


# ---- Resources --------------------------------------------------------------------------------------------


def test_resources_are_those_of_another_linker(tmp_path):
    output_of("x86_64-w64-mingw32-windres", "-O", "coff", "-I", Root / "platform/device", "-I", Root / "resources",
              Root / "resources/toravane.rc", tmp_path / "resources.o")
    output_of("x86_64-w64-mingw32-ld", "-shared", "-o", tmp_path / "resources.dll", tmp_path / "resources.o")
    assert resources_of_image() == resources_of(tmp_path / "resources.dll")


def test_icons_have_sixteen_colours():
    icons = [data for (kind, _, _), data in resources_of(ImagePath).items() if kind == 3]
    bits_a_pixel = [int.from_bytes(data[14:16], "little") for data in icons]
    assert bits_a_pixel == [4, 4]


def test_wrestool_lists_every_resource():
    listed = {
        tuple(int(word) if word.isdigit() else word.strip("'") for word in words)
        for words in re.findall(r"--type='?(\w+)'? --name=('?\w+'?) --language=(\d+)",
                                output_of("wrestool", "--list", ImagePath))
    }
    assert listed == set(resources_of(ImagePath))


def test_each_layout_has_every_menu_and_dialog():
    numbers = {(kind, name) for kind, name, _ in resources_of_image() if kind in (Menu, Dialog)}
    touch = {(kind, name + 100) for kind, name in numbers if 2002 <= name < 2100 or name == 2000}
    keypad = {(kind, name) for kind, name in numbers if name >= 2100}
    assert touch == keypad
    assert len(touch) > 20


# ---- Code -------------------------------------------------------------------------------------------------


class Program:
    """The program's own compiler and linker commands, for one source file more."""

    def __init__(self, folder):
        self.folder = folder
        commands = json.loads((Build / "compile_commands.json").read_text())
        own = next(entry for entry in commands if entry["file"].endswith("/text/copy.cpp"))
        words = shlex.split(own["command"])
        self.compile = words[:words.index("-o")]
        linking = output_of("ninja", "-t", "commands", "program").splitlines()[-1]
        self.link = [word for word in shlex.split(linking) if word not in (":", "&&")]

    def run(self, command):
        return subprocess.run(list(map(str, command)), cwd=Build, capture_output=True, text=True)

    def build(self, source, options=()):
        """The stage that failed and its message; ("", "") when an image came out."""
        (self.folder / "more.cpp").write_text('#include "platform/platform.h"\n' + source)
        elf = self.folder / "program.elf"
        for stage, command in {
            "compiler": [*self.compile, *options, "-c", self.folder / "more.cpp", "-o", self.folder / "more.o"],
            "linker": self.relinked(elf, self.folder / "more.o"),
            "image": [Tools / "toravane-make-image", elf, Build / "platform/device/toravane.res",
                      self.folder / "program.exe"],
        }.items():
            done = self.run(command)
            if done.returncode:
                return stage, done.stderr
        return "", ""

    def relinked(self, elf, *more):
        words = list(self.link)
        words[words.index("-o") + 1] = elf
        words = [word for word in words if not str(word).startswith("-Wl,-Map=")]
        return words + list(more)


@pytest.fixture
def program(tmp_path):
    return Program(tmp_path)


# Faults of a source file, the stage of the build that stops at each, and words of its message.
Faults = {
    "nothing": ("int Value = GetTickCount();", "", ""),
    "a call that only the desktop has":
        ("BOOL Value = SetMenu(nullptr, nullptr);", "linker", "undefined reference to `SetMenu'"),
    "an atomic read-modify-write":
        ("std::atomic<int> Count; int Value = Count.fetch_add(1);", "linker",
         "undefined reference to `__atomic_fetch_add_4'"),
    "an exception": ("int Value = (throw 1, 1);", "compiler", "exception handling disabled"),
    "the heap": ("int* Value = new int;", "linker", "undefined reference to `operator new"),
    "a large frame":
        ("int Sum(volatile char* c); int Big() { volatile char all[4096]; return Sum(all); }", "compiler",
         "larger than 3072 bytes"),
    "an unaligned pointer":
        ("struct [[gnu::packed]] Row { char c; const wchar_t* text; };"
         "extern const Row Rows[]; const Row Rows[] = {{1, L\"x\"}, {2, L\"y\"}};"
         "char Value = Rows[GetTickCount() % 2].c;", "image", "unaligned pointer"),
    "Thumb code": ("int Value = GetTickCount();", "image", "Thumb code at"),
}


@pytest.mark.parametrize("fault", Faults)
def test_fault_stops_the_build(program, fault):
    source, stage, words = Faults[fault]
    stopped_in, message = program.build(source, ["-mthumb"] if fault == "Thumb code" else [])
    assert stopped_in == stage, message
    assert words in message


def test_no_initialiser_is_lost():
    objects = sorted((Build / "CMakeFiles/product.dir").rglob("*.obj"))
    sizes = re.findall(r" \.(?:ctors|init_array)\S* +([0-9a-f]{8}) ", output_of("arm-none-eabi-objdump", "-h", *objects))
    count = sum(int(size, 16) // 4 for size in sizes)
    places = dict(re.findall(r"([0-9a-f]{8}) . Initialisers(\w+)",
                             output_of("arm-none-eabi-nm", Build / "toravane.elf")))
    begin, end = sorted(int(place, 16) for place in places)
    assert (end - begin) // 4 == count > 0


def test_relocated_image_is_the_program_linked_for_that_place(program, tmp_path, image):
    layout = (Root / "platform/device/image.ld").read_text()
    assert layout.count("0x11000;") == 1
    (tmp_path / "elsewhere.ld").write_text(layout.replace("0x11000;", hex(Elsewhere + 0x1000) + ";"))
    command = program.relinked(tmp_path / "elsewhere.elf")
    command[command.index("-T") + 1] = tmp_path / "elsewhere.ld"
    assert program.run(command).returncode == 0
    image.relocate_image(Elsewhere)
    for name in (".text", ".rdata", ".data"):
        output_of("arm-none-eabi-objcopy", "-O", "binary", "-j", name, tmp_path / "elsewhere.elf", tmp_path / "bytes")
        expected = (tmp_path / "bytes").read_bytes()
        section = next(s for s in image.sections if s.Name.rstrip(b"\0").decode() == name)
        assert image.get_memory_mapped_image()[section.VirtualAddress:][:len(expected)] == expected, name


# ---- Building ---------------------------------------------------------------------------------------------


def test_second_build_elsewhere_gives_the_same_bytes(tmp_path):
    environment = os.environ | {"CCACHE_DISABLE": "1"}
    for command in (["cmake", "--preset", "device", "-B", tmp_path], ["cmake", "--build", tmp_path]):
        subprocess.run(command, cwd=Root, env=environment, check=True, stdout=subprocess.DEVNULL)
    assert (tmp_path / "toravane.exe").read_bytes() == ImagePath.read_bytes()
