#include "tests/support/guarded_memory.h"

#include <cstdint>
#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace marvane::testing {

namespace {

#ifdef _WIN32

std::size_t PageSize()
{
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    return system.dwPageSize;
}

/// Pages that can be written, and one more without access.
char* AllocatePages(std::size_t writable)
{
    auto* const pages =
        static_cast<char*>(VirtualAlloc(nullptr, writable + PageSize(), MEM_RESERVE, PAGE_NOACCESS));
    if (!pages || (writable != 0 && !VirtualAlloc(pages, writable, MEM_COMMIT, PAGE_READWRITE)))
        throw std::bad_alloc();
    return pages;
}

void FreePages(char* pages, std::size_t)
{
    VirtualFree(pages, 0, MEM_RELEASE);
}

void MakeReadOnly(char* pages, std::size_t size)
{
    DWORD former = 0;
    VirtualProtect(pages, size, PAGE_READONLY, &former);
}

#else

std::size_t PageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// Pages that can be written, and one more without access.
char* AllocatePages(std::size_t writable)
{
    void* const pages = mmap(nullptr, writable + PageSize(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED || (writable != 0 && mprotect(pages, writable, PROT_READ | PROT_WRITE) != 0))
        throw std::bad_alloc();
    return static_cast<char*>(pages);
}

void FreePages(char* pages, std::size_t writable)
{
    munmap(pages, writable + PageSize());
}

void MakeReadOnly(char* pages, std::size_t size)
{
    mprotect(pages, size, PROT_READ);
}

#endif

/// The size of the pages that hold a block.
std::size_t WholePages(std::size_t size)
{
    return (size + PageSize() - 1) / PageSize() * PageSize();
}

} // namespace

std::shared_ptr<void> GuardedMemory(std::size_t size)
{
    const std::size_t writable = WholePages(size);
    char* const pages = AllocatePages(writable);
    return {pages + writable - size, [=](void*) { FreePages(pages, writable); }};
}

void ForbidWriting(const std::shared_ptr<void>& memory, std::size_t size)
{
    if (size != 0)
        MakeReadOnly(static_cast<char*>(memory.get()) + size - WholePages(size), WholePages(size));
}

} // namespace marvane::testing
