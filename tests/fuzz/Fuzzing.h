#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

/// What a fuzzer is: libFuzzer calls this with one input after the other. An input that the code
/// under test gets wrong ends the program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Called before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fuzzing
{

/// Application object, no log records, HOME an empty folder. Once, at the start.
void start();

/// A folder of this process, removed with it.
QString folder();

/// Prints `what` is wrong and ends the program, so that the input is kept.
[[noreturn]] void fail(const QString& what);

inline void require(bool holds, const char* otherwise)
{
    if (!holds)
        fail(QString::fromUtf8(otherwise));
}

inline QByteArray bytes(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), static_cast<int>(size)};
}

void write(const QString& path, const QByteArray& content);

} // namespace fuzzing
