#!/usr/bin/env bash
# What the built library shows to the outside: the libraries it needs, what it calls of the core
# library, what it exports, and no path of the machine that built it.
# usage: library_boundary.sh LIBGUICORE SOURCE_DIR BINARY_DIR QT_MAJOR_VERSION
set -u
library="$1" source_dir="$2" binary_dir="$3" qt="$4"
# shellcheck source=tests/support/boundary.sh
. "$(dirname "${BASH_SOURCE[0]}")/../support/boundary.sh"

expect "needs Qt Core, Qt Positioning and the core library, which can be swapped under its name" \
    "libQt${qt}Core.so.$qt
libQt${qt}Positioning.so.$qt
libRIVO_ARM_QtLib.so" "$(needed "$library")"

expect "has a version in its name" "libGuiCore.so.1" \
    "$("${READELF:-readelf}" -d "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p')"

called="$("${NM:-nm}" -DC --undefined-only "$library" | sed -E 's/^ +[Uw] //; s/QList<QString>/QStringList/' |
    grep -E '^(el::|rivo::core::|QJsonWrapper::)' | grep -v '^vtable\|^typeinfo' | sort)"
expect "calls nothing of the core library but its declared operations" \
    "QJsonWrapper::JsonObjectFactory::isRegistered(QString)
QJsonWrapper::JsonObjectFactory::m_ObjectsMap()
el::base::Writer::construct(int, char const*, ...)
el::base::Writer::processDispatch()
el::base::elStorage
rivo::core::ConfigManager::instance(QString, QString)
rivo::core::ConfigManager::settingsConfig() const
rivo::core::SettingsConfig::SettingsConfig(QObject*)
rivo::core::SettingsConfig::getLogLevels()
rivo::core::SettingsConfig::logLevelsChanged(QStringList)
rivo::core::SettingsConfig::passengerTypeCodesOrder() const
rivo::core::SettingsConfig::staticMetaObject
rivo::core::SettingsConfig::~SettingsConfig()" "$called"

exported="$("${NM:-nm}" -DC --defined-only "$library" | cut -d' ' -f3-)"
foreign="$(echo "$exported" |
    grep -vE '^(vtable for |typeinfo (name )?for |non-virtual thunk to )?(rivo::models::List(Item|Model)|(Asset|FareProduct|PassengerType|Peripheral|Shopping|ZReport)(Item|ItemRolesHandling)|(Assets|FareProducts|PassengerTypes|Peripherals|ShoppingBasket|ZReport)Model)(::|$)' |
    grep -vE '^__(asan|odr_asan|ubsan|sanitizer)')"
expect "exports its public classes and nothing else" "" "$foreign"

expect_no_paths "$library" "$source_dir" "$binary_dir" "$library"

# What a class of an application that derives from a public class, or casts to it, links against.
for class in rivo::models::List{Item,Model} {Asset,FareProduct,PassengerType,Peripheral,Shopping,ZReport}Item \
    {Assets,FareProducts,PassengerTypes,Peripherals,ShoppingBasket,ZReport}Model; do
    missing="$(for symbol in "vtable for $class" "typeinfo for $class" "$class::staticMetaObject" \
        "$class::~${class##*::}()"; do
        grep -qxF "$symbol" <<< "$exported" || echo "$symbol"
    done)"
    expect "exports what deriving from $class needs" "" "$missing"
done

no_failure
