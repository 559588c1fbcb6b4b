#pragma once

#include <cstdint>
#include <stdexcept>
#include <windows.h>

// A page of memory inside another process of 64-bit Windows, for what does not go from process to process:
// structures that messages point to, and what is known inside the process alone, such as its menus.
class Inside {
public:
    explicit Inside(HANDLE process) : process_(process) {
        page_ = VirtualAllocEx(process, nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
        write(0, callCode);
    }
    ~Inside() { VirtualFreeEx(process_, page_, 0, MEM_RELEASE); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

    // The room for structures: its address in the other process, and copies into it and out of it.
    std::uint64_t address(std::size_t offset = 0) const { return at(roomOffset + offset); }
    template <class T> void put(const T& value) const { write(roomOffset, value); }
    template <class T> T get(std::size_t offset = 0) const { return read<T>(roomOffset + offset); }

    // Calls a function of a system library, which lies at the same address in all processes.
    template <class... Arguments> std::uint64_t call(auto* function, Arguments... arguments) const {
        write(callOffset, Call{reinterpret_cast<std::uint64_t>(function), {(std::uint64_t)arguments...}});
        const HANDLE thread =
            CreateRemoteThread(process_, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(page_),
                               reinterpret_cast<void*>(at(callOffset)), 0, nullptr);
        require(thread != nullptr && WaitForSingleObject(thread, 20'000) == WAIT_OBJECT_0);
        CloseHandle(thread);
        return read<Call>(callOffset).function;
    }

private:
    struct Call {
        std::uint64_t function; // its result afterwards
        std::uint64_t arguments[4];
    };
    static constexpr std::size_t callOffset = 64;
    static constexpr std::size_t roomOffset = 128;
    struct Code {
        unsigned char bytes[36];
    };
    // push rbx; sub rsp, 32; mov rbx, rcx; the four arguments into rcx, rdx, r8, r9; call [rbx]; mov [rbx],
    // rax; add rsp, 32; pop rbx; ret
    static constexpr Code callCode = {0x53, 0x48, 0x83, 0xec, 0x20, 0x48, 0x89, 0xcb, 0x48, 0x8b, 0x4b, 0x08,
                                      0x48, 0x8b, 0x53, 0x10, 0x4c, 0x8b, 0x43, 0x18, 0x4c, 0x8b, 0x4b, 0x20,
                                      0xff, 0x13, 0x48, 0x89, 0x03, 0x48, 0x83, 0xc4, 0x20, 0x5b, 0xc3};

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
