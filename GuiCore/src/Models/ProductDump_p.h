#pragma once

#include "PassengerTypeItem.h"
#include "sProduct.h"

#include <QString>

// Product dumps. The caller opens the record (LOG) itself, so that its own signature is logged;
// these add the pieces. Labels are character strings and numbers ints, each followed by a blank
// under automatic spacing; names are QStrings, which are not.

/// The part that the dumps of records and of tiles share. Both call the passenger type and its
/// number differently and keep the number as int or as text, hence the arguments.
template <typename Record, typename Code>
decltype(auto) writePieces(Record&& record, int fromStopGroupId, int toStopGroupId,
                           int passengerTypeId, const Code& passengerTypeCode, int fareProductId,
                           const char* nameLabel, const QString& name, const QString& description)
{
    return record << "FromStopGroupId: " << fromStopGroupId << " ToStopGroupId: " << toStopGroupId
                  << " PassengerTypeId: " << passengerTypeId
                  << " PassengerTypeCode: " << passengerTypeCode
                  << " FareProductId: " << fareProductId << nameLabel << name
                  << " Description: " << description;
}

template <typename Record>
decltype(auto) writeProduct(Record&& record, const sProduct& product)
{
    return writePieces(record, product.fromStopGroupId, product.toStopGroupId,
                       product.passengerTypeId, product.passengerTypeCode, product.fareProductId,
                       " Name: ", product.fareProductName, product.description);
}

template <typename Record>
decltype(auto) writeTile(Record&& record, const PassengerTypeItem& tile)
{
    return writePieces(record, tile.fromStopGroupId(), tile.toStopGroupId(), tile.id(), tile.code(),
                       tile.fareProductId(), " FareProductName: ", tile.fareProductName(),
                       tile.description());
}
