// GLib: its lists take a slice of memory for each element; its queue between threads has a lock.
#include <glib.h>

#include "bench/support/lock_operations.h"

namespace {

class RwLock {
 public:
  using ForThread = bench::NoPreparation;
  RwLock() { g_rw_lock_init(&lock_); }
  void Exclusive() { g_rw_lock_writer_lock(&lock_); }
  void EndExclusive() { g_rw_lock_writer_unlock(&lock_); }
  void Shared() { g_rw_lock_reader_lock(&lock_); }
  void EndShared() { g_rw_lock_reader_unlock(&lock_); }

 private:
  GRWLock lock_;
};

class List {
 public:
  void Push() { list_ = g_slist_prepend(list_, this); }
  void* Pop() {
    void* first = list_->data;
    list_ = g_slist_delete_link(list_, list_);
    return first;
  }

 private:
  GSList* list_ = nullptr;
};

class Queue {
 public:
  Queue() : queue_(g_async_queue_new()) {}
  ~Queue() { g_async_queue_unref(queue_); }
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;
  void Push() { g_async_queue_push(queue_, this); }
  void* Pop() { return g_async_queue_try_pop(queue_); }

 private:
  GAsyncQueue* queue_;
};

bool RegisterAll() {
  constexpr char kName[] = "glib";
  bench::RegisterLock<RwLock>(kName);
  bench::Register("list_push_pop", kName, bench::PushPop<List>);
  bench::Register("locked_list_push_pop", kName, bench::PushPop<Queue>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
