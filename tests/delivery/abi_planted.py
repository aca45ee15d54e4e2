#!/usr/bin/env python3
"""Plants changes in a copy of GuiCore and compares the library with packaging/abi each time: what is
incompatible must be found, what is compatible must pass. Takes some minutes.

abi_planted.py [NAME...]    only the changes of these names
"""

import os
import shutil
import subprocess
import sys
import tempfile
from collections import namedtuple
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
LIST_ITEM = "ListModel/ListItem.h"
ASSET_ITEM = "Models/AssetItem.h"
GRID = "Models/PassengerTypesModel.h"
PRODUCT = "Models/sProduct.h"

# Edits are (file below GuiCore/src, text, its replacement). The reports are all among the lines of the
# comparison; without any, the library must be found compatible.
Change = namedtuple("Change", "name edits reports")

CHANGES = [
    Change("nothing", [], []),
    Change("function-added", [(ASSET_ITEM, "    ~AssetItem()", "    int extra() const;\n    ~AssetItem()"),
                              ("Models/AssetItem.cpp", "AssetItem::~AssetItem()",
                               "int AssetItem::extra() const { return 1; }\n\nAssetItem::~AssetItem()")],
           []),
    Change("enumerator-added", [(ASSET_ITEM, "DirectionRole = 266", "DirectionRole = 266, ExtraRole = 267")],
           []),
    Change("field-added", [(ASSET_ITEM, "double m_direction = 0.0;", "double m_direction = 0.0;\n    int m_extra = 0;")],
           ["was     class AssetItem: 96 bytes", "became  class AssetItem: 104 bytes",
            "became  field int m_extra at 96"]),
    Change("field-added-in-a-gap", [(ASSET_ITEM, "bool m_inView = false;", "bool m_inView = false;\n    bool m_extra = false;")],
           ["became  field bool m_extra at 82"]),
    Change("fields-swapped", [(PRODUCT, "int fromStopGroupId = 0; ", "int moved = 0; "),
                              (PRODUCT, "int toStopGroupId = 0; ", "int fromStopGroupId = 0; "),
                              (PRODUCT, "int moved = 0; ", "int toStopGroupId = 0; ")],
           ["was     field int fromStopGroupId at 60", "was     field int toStopGroupId at 64"]),
    Change("field-of-another-type", [(ASSET_ITEM, "bool m_updated = false;", "unsigned char m_updated = 0;")],
           ["was     field bool m_updated at 80"]),
    Change("list-of-another-type", [(GRID, "QVector<int> m_localTypeCodes;", "QList<int> m_localTypeCodes;"),
                                          ("Models/PassengerTypesModelOrdering.cpp",
                                           "m_localTypeCodes.resize(0);", "m_localTypeCodes.clear();"),
                                          ("Models/PassengerTypesModelOrdering.cpp",
                                           "replaceByTypeCodes(m_localTypeCodes, typeCodes);",
                                           "QVector<int> all; replaceByTypeCodes(all, typeCodes);"
                                           " m_localTypeCodes = all.toList();"),
                                          ("Models/PassengerTypesModelOrdering.cpp",
                                           "counts, rows, m_localTypeCodes", "counts, rows, m_localTypeCodes.toVector()"),
                                          ("Models/PassengerTypesModelOrdering.cpp",
                                           "m_numberOfColumns, m_localTypeCodes", "m_numberOfColumns, m_localTypeCodes.toVector()")],
           ["was     field QVector<int> m_localTypeCodes at 80"]),
    Change("virtual-added", [(LIST_ITEM, "    virtual void triggerItemUpdate();",
                              "    virtual void triggerItemUpdate();\n    virtual int extra() const { return 1; }")],
           ["was     table of 18 entries", "became  table of 19 entries"]),
    Change("virtuals-reordered", [(LIST_ITEM, "virtual int id() const = 0;", ""),
                                  (LIST_ITEM, "virtual QVariant data(int role) const = 0;",
                                   "virtual QVariant data(int role) const = 0;\n    virtual int id() const = 0;")],
           ["was     virtual 12 id() const", "was     virtual 13 data(int) const"]),
    Change("virtual-no-more", [(LIST_ITEM, "virtual void triggerItemUpdate();", "void triggerItemUpdate();")],
           ["was     virtual 15 triggerItemUpdate()"]),
    Change("enumerator-of-another-value", [(GRID, "PT_LFS = 8", "PT_LFS = 6")],
           ["was     enumerator PT_LFS = 8"]),
    Change("enumeration-of-another-type", [(GRID, "enum PassengerType : int", "enum PassengerType : short")],
           ["was     enum PassengerTypesModel::PassengerType: int"]),
    Change("role-of-another-value", [(ASSET_ITEM, "InViewRole = 265", "InViewRole = 275")],
           ["was     enumerator InViewRole = 265"]),
    Change("constant-of-another-value", [(GRID, "maximumGridSlots = 100000", "maximumGridSlots = 1000")],
           ["was     constant int const maximumGridSlots = 100000"]),
    Change("argument-of-another-type", [("Models/ShoppingItem.h", "void setRouteId(int value)", "void setRouteId(qint64 value)"),
                                        ("Models/ShoppingItem.cpp", "::setRouteId(int value) { m_routeId = value; }",
                                         "::setRouteId(qint64 value) { m_routeId = int(value); }")],
           ["no symbol _ZN12ShoppingItem10setRouteIdEi"]),
    Change("result-of-another-type", [("Models/FareProductsModel.h", "QString getFareProductDescription(", "QVariant getFareProductDescription("),
                                      ("Models/FareProductsModel.cpp", "QString FareProductsModel::get", "QVariant FareProductsModel::get")],
           ["was     function QString getFareProductDescription(int)"]),
    Change("result-of-a-void-function", [("Models/PeripheralItem.h", "void setName(const QString& value)", "QString setName(const QString& value)"),
                                         ("Models/PeripheralItem.cpp", "void PeripheralItem::setName(const QString& value) { store(m_name, value); }",
                                          "QString PeripheralItem::setName(const QString& value) { store(m_name, value); return m_name; }")],
           ["was     function void setName(QString const&)"]),
    Change("function-static-no-more", [(GRID, "static bool hasBackendAssignedPosOutOfRange", "bool hasBackendAssignedPosOutOfRange")],
           ["was     function static bool hasBackendAssignedPosOutOfRange(QVector<sProduct> const&)"]),
    Change("function-gone", [("Models/PassengerTypeItem.h", "    void setPos(const int& value);\n", ""),
                             ("Models/PassengerTypeItem.cpp", "void PassengerTypeItem::setPos(const int& value) { store(m_pos, value); }\n", "")],
           ["no symbol _ZN17PassengerTypeItem6setPosERKi"]),
    Change("class-not-exported", [("Models/ZReportItem.h", "class GUICORE_EXPORT ZReportItem", "class ZReportItem")],
           ["no symbol _ZTV11ZReportItem"]),
    Change("base-added", [("Models/AssetsModel.h", "public rivo::models::ListModel", "public rivo::models::ListModel, public sProduct"),
                          ("Models/AssetsModel.h", '#include "ListModel.h"', '#include "ListModel.h"\n#include "sProduct.h"')],
           ["was     class AssetsModel: 32 bytes", "became  base sProduct at 32"]),
    Change("base-of-another-type", [("Models/AssetsModel.h", "public rivo::models::ListModel", "public QAbstractListModel"),
                                    ("Models/AssetsModel.cpp", "ListModel(new AssetItem(parent), parent)", "QAbstractListModel(parent)"),
                                    ("Models/AssetsModel.h", "    ~AssetsModel()",
                                     "    int rowCount(const QModelIndex&) const override { return 0; }\n"
                                     "    QVariant data(const QModelIndex&, int) const override { return {}; }\n"
                                     "    ~AssetsModel()")],
           ["was     base rivo::models::ListModel at 0"]),
    Change("template-with-a-default", [("ListModel/QHashStaticInit.h", "template <typename Key, typename Value>",
                                        "template <typename Key, typename Value, typename Extra = void>")],
           ["was     static rivo::models::QHashStaticInit<int, QByteArray> const ASSETS_HASH_TABLE"]),
]


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


class Copy:
    """The libraries in a folder of their own, each as one translation unit: that is built fastest."""

    def __init__(self, folder):
        self._folder = folder / "copy"
        self._build = folder / "build"
        files = run("git", "ls-files", "CMakeLists.txt", "cmake", "Core", "GuiCore", cwd=REPOSITORY, check=True)
        for name in files.stdout.split():
            target = self._folder / name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(REPOSITORY / name, target)
        off = [f"-DGUICORE_BUILD_{part}=OFF" for part in ("QML", "FEED", "TERMINAL", "TOOLS", "TESTS")]
        run("cmake", "-G", "Ninja", "-S", self._folder, "-B", self._build, "-DCMAKE_BUILD_TYPE=Debug",
            "-DCMAKE_UNITY_BUILD=ON", "-DCMAKE_UNITY_BUILD_BATCH_SIZE=0", *off, check=True)

    def problem(self, change):
        """What is wrong about the comparison with this change; None if nothing is."""
        originals = {}
        try:
            for name, old, new in change.edits:
                file = self._folder / "GuiCore/src" / name
                text = file.read_text()
                originals.setdefault(file, text)
                if text.count(old) != 1:
                    return f"{name} has {old!r} {text.count(old)} times"
                file.write_text(text.replace(old, new))
            built = run("cmake", "--build", self._build, "--target", "GuiCore")
            if built.returncode != 0:
                return "does not build:\n" + built.stdout
            compared = run(REPOSITORY / "packaging/check-abi.sh", self._build / "lib/libGuiCore.so")
        finally:
            for file, text in originals.items():
                file.write_text(text)
        missing = [report for report in change.reports if report not in compared.stdout]
        if compared.returncode != (1 if change.reports else 0) or missing:
            return f"exit code {compared.returncode}, missing {missing}:\n{compared.stdout}"
        return None


def main(names):
    failures = 0
    os.environ["LC_ALL"] = "C"
    with tempfile.TemporaryDirectory() as folder:
        copy = Copy(Path(folder))
        for change in CHANGES:
            if names and change.name not in names:
                continue
            problem = copy.problem(change)
            failures += problem is not None
            print(f"{change.name}: {'FAIL, ' + problem if problem else 'as expected'}", flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
