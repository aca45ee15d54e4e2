#pragma once

#include <Journal.h>

/// Writes all records of a journal to standard output as a JSON array of the objects that
/// Journal::forEachRecord() gives, with "kind" as a word. False if they cannot be read or written.
bool exportAsJson(rivo::sales::Journal& journal);

/// The same as CSV (RFC 4180), a line for each record: number, kind, shift, time, driver, what it
/// is worth in minor units, the tickets it is about, all its rows as JSON, the seal.
bool exportAsCsv(rivo::sales::Journal& journal);
