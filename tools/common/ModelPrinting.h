#pragma once

#include "FeedCommandLine.h"

#include <Feed.h>

#include <QByteArray>

#include <functional>

namespace rivo::models
{
class ListModel;
}

/// Calls `makeModel` under what the options ask for: the configured display order, and the
/// library's log and notes elsewhere than on standard output. Its result; false also, after
/// complaining, if there is no place for a temporary configuration.
bool makeWithLibrary(const FeedToolOptions& options, const std::function<bool()>& makeModel);

/// Writes the model to standard output in a format; `asText` is what text means to the tool.
/// False, after complaining, if it cannot be written.
bool printModel(OutputFormat format, const rivo::feed::Feed& feed,
                const rivo::models::ListModel& model, const std::function<QByteArray()>& asText);
