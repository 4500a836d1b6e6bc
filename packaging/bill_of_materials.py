#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Prints what the packages are made of, as an SPDX 2.3 document: our own files and what is compiled or linked in.

Usage: bill_of_materials.py VERSION DATE, the date as seconds since 1970. Versions are those of the installed packages.
"""
import datetime
import json
import subprocess
import sys

# Debian package, licence, and the parts of it in our files.
PARTS = (
    ("g++-mingw-w64-x86-64-posix", "GPL-3.0-or-later WITH GCC-exception-3.1", "run-time library of toravane.exe"),
    ("mingw-w64-x86-64-dev", "LicenseRef-public-domain-or-permissive", "run-time library of toravane.exe"),
    ("g++", "GPL-3.0-or-later WITH GCC-exception-3.1", "headers of the C++ library, in the tools"),
    ("libasio-dev", "BSL-1.0", "headers, in toravanectl"),
    ("libcli11-dev", "BSD-3-Clause", "headers, in the tools"),
    ("nlohmann-json3-dev", "MIT", "headers, in toravanectl"),
    ("zlib1g-dev", "Zlib", "library beside toravane-replay; inside toravane-replay.exe"),
    ("libpugixml-dev", "MIT", "library beside toravane-receiver"),
)


def installed_version(package):
    done = subprocess.run(["dpkg-query", "--show", "--showformat=${Version}", package], capture_output=True, text=True)
    if done.returncode:
        sys.exit(f"bill_of_materials.py: package {package} is not installed")
    return done.stdout


def part(name, version, licence, comment, supplier):
    return {"SPDXID": "SPDXRef-" + name.replace("+", "p"), "name": name, "versionInfo": version, "supplier": supplier,
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False, "licenseConcluded": licence,
            "licenseDeclared": licence, "copyrightText": "NOASSERTION", "comment": comment}


def main():
    version, seconds = sys.argv[1:]
    created = datetime.datetime.fromtimestamp(int(seconds), datetime.timezone.utc)
    ours = part("toravane", version, "MIT", "all files of this version", "Organization: The Toravane authors")
    others = [part(name, installed_version(name), licence, comment, "Organization: Debian")
              for name, licence, comment in PARTS]
    json.dump({
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"toravane-{version}", "documentNamespace": f"https://toravane.example/spdx/toravane-{version}",
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: package.sh"]},
        "hasExtractedLicensingInfos": [{
            "licenseId": "LicenseRef-public-domain-or-permissive", "name": "Run-time library of mingw-w64",
            "extractedText": "Public domain or permissive licences; see its package's copyright file."}],
        "packages": [ours, *others],
        "relationships": [
            {"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES", "relatedSpdxElement": ours["SPDXID"]},
            *({"spdxElementId": ours["SPDXID"], "relationshipType": "CONTAINS", "relatedSpdxElement": other["SPDXID"]}
              for other in others)],
    }, sys.stdout, indent=2)
    print()


main()
