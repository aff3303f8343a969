// What stands in for the parser's util.c, which ends the program when there is no memory.
#include "host/mime/html_memory.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>

namespace wrenfold {
namespace {

// In front of each block; as large as the strictest alignment asks.
struct alignas(std::max_align_t) Block {
  Block* before;
  Block* behind;
  std::size_t size;  // without this
};

struct Memory {
  Block* newest = nullptr;
  std::size_t left = 0;
  std::jmp_buf exhausted;
};

// Of the parser that this thread is in.
thread_local Memory* t_memory = nullptr;

[[noreturn]] void BreakOff() { std::longjmp(t_memory->exhausted, 1); }

void Link(Block* block) {
  if (block->before != nullptr) block->before->behind = block;
  if (block->behind != nullptr) block->behind->before = block;
  if (block->behind == nullptr) t_memory->newest = block;
}

void Unlink(const Block* block) {
  if (block->before != nullptr) block->before->behind = block->behind;
  if (block->behind != nullptr) block->behind->before = block->before;
  if (block->behind == nullptr) t_memory->newest = block->before;
}

void* Allocate(std::size_t size) {
  if (size > t_memory->left || t_memory->left - size < sizeof(Block)) BreakOff();
  auto* const block = static_cast<Block*>(std::malloc(sizeof(Block) + size));
  if (block == nullptr) BreakOff();
  *block = {t_memory->newest, nullptr, size};
  Link(block);
  t_memory->left -= sizeof(Block) + size;
  return block + 1;
}

void Free(void* content) {
  if (content == nullptr) return;
  Block* const block = static_cast<Block*>(content) - 1;
  Unlink(block);
  t_memory->left += sizeof(Block) + block->size;
  std::free(block);
}

void* Reallocate(void* content, std::size_t size) {
  void* const larger = Allocate(size);
  if (content == nullptr) return larger;
  const std::size_t used = (static_cast<Block*>(content) - 1)->size;
  std::memcpy(larger, content, used < size ? used : size);
  Free(content);
  return larger;
}

bool Run(Memory& memory, void (*work)(void*), void* data) {
  if (setjmp(memory.exhausted) != 0) return false;
  work(data);
  return true;
}

}  // namespace

bool WithBoundedHtmlMemory(std::size_t limit, void (*work)(void* data), void* data) {
  Memory memory;
  memory.left = limit;
  Memory* const outer = t_memory;
  t_memory = &memory;
  const bool done = Run(memory, work, data);
  while (memory.newest != nullptr) Free(memory.newest + 1);
  t_memory = outer;
  return done;
}

}  // namespace wrenfold

extern "C" {

void* gumbo_alloc(std::size_t size) { return wrenfold::Allocate(size); }
void* gumbo_realloc(void* content, std::size_t size) { return wrenfold::Reallocate(content, size); }
void gumbo_free(void* content) { wrenfold::Free(content); }

char* gumbo_strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(wrenfold::Allocate(size), text, size));
}

void gumbo_debug(const char*, ...) {}
}
