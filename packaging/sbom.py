#!/usr/bin/env python3
"""Writes what a package is made of, as SPDX 2.3 in JSON, to standard output.

usage: sbom.py PACKAGE VERSION BUILD

PACKAGE is one of ours, BUILD the folder in which it is built: BUILD/packaging/PACKAGE/depends names
the packages that it needs. Their versions are those with which it was built, on this machine. The
date is that of SOURCE_DATE_EPOCH, so that the same sources give the same file.
"""

import datetime
import json
import os
import subprocess
import sys

# Compiled into the package, so that no dependency names it.
COMPILED_IN = {"libguicore1": ["libeasyloggingpp-dev"]}


def identifier(name):
    return "SPDXRef-Package-" + "".join(c if c.isalnum() or c in ".-" else "-" for c in name)


def installed_version(name):
    """Empty for a package that is needed but not installed here."""
    shown = subprocess.run(["dpkg-query", "-W", "-f", "${Version}\\n", name], capture_output=True,
                           text=True, check=False).stdout.split()
    return shown[0] if shown else ""


def described(name, version, **more):
    entry = {"SPDXID": identifier(name), "name": name, "downloadLocation": "NOASSERTION",
             "filesAnalyzed": False, "licenseConcluded": "NOASSERTION",
             "licenseDeclared": "NOASSERTION", "copyrightText": "NOASSERTION", **more}
    if version:
        entry["versionInfo"] = version
    return entry


def of_debian(name):
    version = installed_version(name)
    address = f"pkg:deb/debian/{name}" + (f"@{version.replace(':', '%3A')}" if version else "")
    return described(name, version, supplier="Organization: Debian",
                     externalRefs=[{"referenceCategory": "PACKAGE-MANAGER",
                                    "referenceType": "purl", "referenceLocator": address}])


def related(first, kind, second):
    return {"spdxElementId": first, "relationshipType": kind, "relatedSpdxElement": second}


def bill(package, version, needed):
    contained = COMPILED_IN.get(package, [])
    made = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]),
                                           datetime.timezone.utc)
    own = identifier(package)
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"{package}-{version}",
        "documentNamespace": f"https://rivo.example/spdx/{package}-{version}",
        "creationInfo": {"created": made.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: Rivo", "Tool: packaging/sbom.py"]},
        "packages": [described(package, version, supplier="Organization: Rivo",
                               copyrightText="2026 Rivo")] +
                    [of_debian(name) for name in contained + needed],
        "relationships": [related("SPDXRef-DOCUMENT", "DESCRIBES", own)] +
                         [related(own, "CONTAINS", identifier(name)) for name in contained] +
                         [related(own, "DEPENDS_ON", identifier(name)) for name in needed],
    }


def main():
    package, version, build = sys.argv[1:]
    with open(f"{build}/packaging/{package}/depends", encoding="utf-8") as file:
        needed = sorted(set(file.read().split()))
    json.dump(bill(package, version, needed), sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
