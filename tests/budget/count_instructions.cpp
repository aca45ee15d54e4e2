// A plugin of the emulator qemu-arm: counts the instructions of the emulated program, and writes
// their number to standard error at its end.
//
//     g++ -shared -fPIC -o count_instructions.so count_instructions.cpp
//     qemu-arm -plugin count_instructions.so PROGRAM
//
// Debian has the emulator, but not the header for its plugins: what is used of their interface,
// version 1, is declared here under its own names.

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" {
struct qemu_plugin_tb; // instructions that are translated, and run, together
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };

void qemu_plugin_register_vcpu_tb_trans_cb(std::uint64_t plugin,
                                           void (*translated)(std::uint64_t, qemu_plugin_tb*));
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb* block, qemu_plugin_op operation,
                                              void* number, std::uint64_t operand);
void qemu_plugin_register_atexit_cb(std::uint64_t plugin, void (*ended)(std::uint64_t, void*),
                                    void* data);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb* block);

[[gnu::visibility("default")]] extern const int qemu_plugin_version;
const int qemu_plugin_version = 1;
}

namespace
{

std::uint64_t instructions = 0; // of one thread: another one's would get lost

void countWhenRun(std::uint64_t, qemu_plugin_tb* block)
{
    qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &instructions,
                                             qemu_plugin_tb_n_insns(block));
}

void print(std::uint64_t, void*)
{
    std::fprintf(stderr, "Instructions: %" PRIu64 "\n", instructions);
}

} // namespace

extern "C" [[gnu::visibility("default")]] int qemu_plugin_install(std::uint64_t plugin, const void*,
                                                                  int, char**)
{
    qemu_plugin_register_vcpu_tb_trans_cb(plugin, countWhenRun);
    qemu_plugin_register_atexit_cb(plugin, print, nullptr);
    return 0;
}
