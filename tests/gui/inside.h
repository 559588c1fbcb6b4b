#pragma once

#include <cstdint>
#include <stdexcept>
#include <windows.h>

// A page of memory inside another process of 64-bit Windows, for what does not go from process to process:
// structures that messages point to, and what is known inside the process alone, such as the state of its
// menus. The page comes with a thread that makes our calls. Both are made before the process runs, since Wine
// makes them in a signal handler of a running thread, which hangs when that thread is allocating memory. They
// go with it.
class Inside {
public:
    explicit Inside(HANDLE process) : process_(process) {
        // cppcheck-suppress[noCopyConstructor, noOperatorEq, noDestructor]
        page_ = VirtualAllocEx(process, nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
        write(0, caller);
        write(callOffset, Call{0, {}, 0, reinterpret_cast<std::uint64_t>(&Sleep)});
        const HANDLE thread =
            CreateRemoteThread(process, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(page_),
                               reinterpret_cast<void*>(at(callOffset)), 0, nullptr);
        require(thread != nullptr);
        CloseHandle(thread);
    }

    // The room for structures: its address in the other process, and copies into it and out of it.
    std::uint64_t address() const { return at(roomOffset); }
    template <class T> void put(const T& value) const { write(roomOffset, value); }
    template <class T> T get() const { return read<T>(roomOffset); }

    // Calls a function of a system library, which lies at the same address in all processes.
    template <class... Arguments> std::uint64_t call(auto* function, Arguments... arguments) const {
        write(callOffset, Call{0, {(std::uint64_t)arguments...}, 0, reinterpret_cast<std::uint64_t>(&Sleep)});
        write(callOffset, reinterpret_cast<std::uint64_t>(function));
        const ULONGLONG end = GetTickCount64() + 20'000;
        while (read<std::uint64_t>(callOffset) != 0) {
            require(GetTickCount64() < end);
            Sleep(1);
        }
        return read<Call>(callOffset).result;
    }

private:
    struct Call {
        std::uint64_t function; // 0 when there is nothing to call
        std::uint64_t arguments[4];
        std::uint64_t result;
        std::uint64_t sleep;
    };
    static constexpr std::size_t callOffset = 64;
    static constexpr std::size_t roomOffset = 128;
    struct Code {
        unsigned char bytes[50];
    };
    // push rbx; sub rsp, 32; mov rbx, rcx; then for ever: mov ecx, 1; call [rbx + 48]; cmp qword [rbx], 0; je
    // to the sleep; the four arguments into rcx, rdx, r8, r9; call [rbx]; mov [rbx + 40], rax; and qword
    // [rbx], 0
    static constexpr Code caller = {
        0x53, 0x48, 0x83, 0xec, 0x20, 0x48, 0x89, 0xcb, 0xb9, 0x01, 0x00, 0x00, 0x00, 0xff, 0x53, 0x30, 0x48,
        0x83, 0x3b, 0x00, 0x74, 0xf2, 0x48, 0x8b, 0x4b, 0x08, 0x48, 0x8b, 0x53, 0x10, 0x4c, 0x8b, 0x43, 0x18,
        0x4c, 0x8b, 0x4b, 0x20, 0xff, 0x13, 0x48, 0x89, 0x43, 0x28, 0x48, 0x83, 0x23, 0x00, 0xeb, 0xd6};

    static void require(bool done) {
        if (!done) throw std::runtime_error("cannot work inside the program");
    }
    std::uint64_t at(std::size_t offset) const { return reinterpret_cast<std::uint64_t>(page_) + offset; }
    template <class T> void write(std::size_t offset, const T& value) const {
        require(WriteProcessMemory(process_, reinterpret_cast<void*>(at(offset)), &value, sizeof value,
                                   nullptr) != 0);
    }
    template <class T> T read(std::size_t offset) const {
        T value = {};
        require(ReadProcessMemory(process_, reinterpret_cast<void*>(at(offset)), &value, sizeof value,
                                  nullptr) != 0);
        return value;
    }

    HANDLE process_;
    void* page_;
};
