#include "zebcomn/lists/Linklist.h"

// The assertions below stand in every build, and <cassert> declares what prints them only so.
#undef NDEBUG
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace {

/// What a list handle designates.
struct ListRecord {
  void* lpTail;
  void* lpHead;
  DWORD count;
};

static_assert(offsetof(ListRecord, lpTail) == 0, "lpTail is the first field");
static_assert(offsetof(ListRecord, lpHead) == sizeof(void*), "lpHead is the second field");
static_assert(offsetof(ListRecord, count) == 2 * sizeof(void*), "the count is the third field");
static_assert(sizeof(void*) != 4 || sizeof(ListRecord) == 12, "12 bytes on a 32-bit target");

ListRecord* RecordOf(void* handle) {
  return static_cast<ListRecord*>(handle);
}

/// The two links that an element begins with, by their byte offset.
enum class Link : std::size_t { kPrevious = 0, kNext = sizeof(void*) };

unsigned char* AddressOf(void* element, Link link) {
  return static_cast<unsigned char*>(element) + static_cast<std::size_t>(link);
}

// An element may sit at an odd address, on a machine that traps there as well, so a link is never
// read or written as a pointer.
void* GetLink(void* element, Link link) {
  void* value = nullptr;
  std::memcpy(&value, AddressOf(element, link), sizeof value);
  return value;
}

void SetLink(void* element, Link link, void* value) {
  std::memcpy(AddressOf(element, link), &value, sizeof value);
}

/// A precondition of an exported function. Agents' logs are searched for these exact texts, so the
/// line and the function are fixed and not those of this file.
struct Precondition {
  const char* expression;
  unsigned int line;
  const char* function;
};

constexpr Precondition kInitOutPointer = {"lphLinkedList", 31, "BOOL LinkedList_Init(void**)"};
constexpr Precondition kGetCountList = {"lpMain", 167, "DWORD LinkedList_GetCount(void*)"};
constexpr Precondition kPeekAtItem = {"lpItem", 200, "void* LinkedList_PeekAt(void*, DWORD)"};
constexpr Precondition kRemoveAtTail = {"lpMain->lpTail", 238,
                                        "void* LinkedList_RemoveAt(void*, DWORD)"};
constexpr Precondition kRemoveAtItem = {"lpItem", 245, "void* LinkedList_RemoveAt(void*, DWORD)"};

void Require(bool holds, const Precondition& precondition) {
  if (!holds) {
    __assert_fail(precondition.expression, "Linklist", precondition.line, precondition.function);
  }
}

/// The element `steps` links after `first`.
void* Follow(void* first, DWORD steps, const Precondition& item_exists) {
  void* item = first;
  Require(item != nullptr, item_exists);
  for (DWORD step = 0; step < steps; ++step) {
    item = GetLink(item, Link::kNext);
    Require(item != nullptr, item_exists);
  }
  return item;
}

void CountOneLess(ListRecord* list) {
  if (--list->count == 0) {
    list->lpHead = nullptr;
    list->lpTail = nullptr;
  }
}

/// Moves the head or the tail off the element at `index`; JoinNeighbours() sees to the links.
void MoveEndsOff(ListRecord* list, DWORD index) {
  if (index == 0) {
    Require(list->lpHead != nullptr, kRemoveAtItem);
    list->lpHead = GetLink(list->lpHead, Link::kNext);
  } else if (index == list->count - 1) {
    Require(list->lpTail != nullptr, kRemoveAtTail);
    list->lpTail = GetLink(list->lpTail, Link::kPrevious);
  }
}

/// Joins the element's two neighbours; its own links stay.
void JoinNeighbours(void* element) {
  void* previous = GetLink(element, Link::kPrevious);
  void* next = GetLink(element, Link::kNext);
  if (previous != nullptr) SetLink(previous, Link::kNext, next);
  if (next != nullptr) SetLink(next, Link::kPrevious, previous);
}

}  // namespace

BOOL LinkedList_Init(void** lphLinkedList) {
  Require(lphLinkedList != nullptr, kInitOutPointer);
  auto* record = static_cast<ListRecord*>(std::malloc(sizeof(ListRecord)));
  if (record == nullptr) return FALSE;
  *record = ListRecord{};
  *lphLinkedList = record;
  return TRUE;
}

void LinkedList_End(void** lphLinkedList) {
  if (lphLinkedList == nullptr || *lphLinkedList == nullptr) return;
  std::free(*lphLinkedList);
  *lphLinkedList = nullptr;
}

BOOL LinkedList_AddHead(void* hLinkedList, void* lpElement) {
  if (hLinkedList == nullptr || lpElement == nullptr) return FALSE;
  ListRecord* list = RecordOf(hLinkedList);
  SetLink(lpElement, Link::kNext, list->lpHead);
  SetLink(lpElement, Link::kPrevious, nullptr);
  if (list->lpHead != nullptr) SetLink(list->lpHead, Link::kPrevious, lpElement);
  list->lpHead = lpElement;
  if (list->lpTail == nullptr) list->lpTail = lpElement;
  ++list->count;
  return TRUE;
}

BOOL LinkedList_AddTail(void* hLinkedList, void* lpElement) {
  if (hLinkedList == nullptr || lpElement == nullptr) return FALSE;
  ListRecord* list = RecordOf(hLinkedList);
  SetLink(lpElement, Link::kPrevious, list->lpTail);
  SetLink(lpElement, Link::kNext, nullptr);
  if (list->lpTail != nullptr) SetLink(list->lpTail, Link::kNext, lpElement);
  list->lpTail = lpElement;
  if (list->lpHead == nullptr) list->lpHead = lpElement;
  ++list->count;
  return TRUE;
}

void* LinkedList_RemoveTail(void* hLinkedList) {
  ListRecord* list = RecordOf(hLinkedList);
  if (list == nullptr || list->count == 0) return nullptr;
  void* removed = list->lpTail;
  list->lpTail = GetLink(removed, Link::kPrevious);
  if (list->lpTail != nullptr) SetLink(list->lpTail, Link::kNext, nullptr);
  CountOneLess(list);
  return removed;
}

DWORD LinkedList_GetCount(void* hLinkedList) {
  Require(hLinkedList != nullptr, kGetCountList);
  return RecordOf(hLinkedList)->count;
}

void* LinkedList_PeekAt(void* hLinkedList, DWORD dwIndex) {
  const ListRecord* list = RecordOf(hLinkedList);
  if (dwIndex >= list->count) return nullptr;
  return Follow(list->lpHead, dwIndex, kPeekAtItem);
}

void* LinkedList_RemoveAt(void* hLinkedList, DWORD dwIndex) {
  ListRecord* list = RecordOf(hLinkedList);
  if (list == nullptr || dwIndex >= list->count) return nullptr;
  void* first = list->lpHead;
  MoveEndsOff(list, dwIndex);
  void* removed = Follow(first, dwIndex, kRemoveAtItem);
  CountOneLess(list);
  JoinNeighbours(removed);
  return removed;
}
