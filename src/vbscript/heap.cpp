#include "vbscript/heap.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "vbscript/limits.h"
#include "vbscript/object.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

void push_dead(Counted*& list, Counted* item) {
  item->heap = reinterpret_cast<Heap*>(list);
  list = item;
}

Counted* pop_dead(Counted*& list) {
  Counted* item = list;
  if (item != nullptr) list = reinterpret_cast<Counted*>(item->heap);
  return item;
}

}  // namespace

Heap::~Heap() {
  break_cycles();
  if (empty_ != nullptr) Value::adopt(empty_);
}

void Heap::charge(std::size_t bytes) {
  if (bytes > kMaxHeapBytes - bytes_) raise(ErrorCode::kOutOfMemory);
  bytes_ += bytes;
}

Text* Heap::new_text_of_size(std::size_t length, std::size_t capacity) {
  if (capacity > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  charge(sizeof(Text) + capacity);
  void* memory = std::malloc(sizeof(Text) + capacity);
  if (memory == nullptr) {
    credit(sizeof(Text) + capacity);
    raise(ErrorCode::kOutOfMemory);
  }
  Text* text = new (memory) Text(this);
  text->length = static_cast<std::uint32_t>(length);
  text->capacity = static_cast<std::uint32_t>(capacity);
  return text;
}

Text* Heap::new_text(std::string_view bytes) {
  if (bytes.empty()) {
    if (empty_ == nullptr) empty_ = new_text_of_size(0, 0);
    ++empty_->references;
    return empty_;
  }
  Text* text = new_text_of_size(bytes.size(), bytes.size());
  std::memcpy(text->data(), bytes.data(), bytes.size());
  return text;
}

Array* Heap::new_array() {
  charge(sizeof(Array));
  return new Array(this);
}

// The vectors' own memory is far below the limit charged before, so its running out ends the process as elsewhere.
Array* Heap::new_array(std::vector<Value> elements) {
  if (elements.size() > kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
  const std::size_t bytes = elements.capacity() * sizeof(Value);
  charge(sizeof(Array) + bytes);
  Array* array = new Array(this);
  array->charged = bytes;
  array->dimensions.push_back({static_cast<std::int32_t>(elements.size()) - 1, 1});
  array->elements = std::move(elements);
  return array;
}

void Heap::dimension(Array& array, const std::vector<std::int32_t>& bounds) {
  if (bounds.empty() || bounds.size() > kMaxArrayDimensions) raise(ErrorCode::kSubscriptOutOfRange);
  std::vector<Array::Dimension> dimensions;
  dimensions.reserve(bounds.size());
  std::uint64_t product = 1;
  for (const std::int32_t upper : bounds) {
    if (upper < -1) raise(ErrorCode::kSubscriptOutOfRange);
    dimensions.push_back({upper, static_cast<std::size_t>(product)});
    product *= static_cast<std::uint64_t>(upper + std::int64_t{1});
    if (product > kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
  }
  const auto count = static_cast<std::size_t>(product);
  const std::size_t bytes = count * sizeof(Value);
  if (bytes > array.charged) charge(bytes - array.charged);
  if (bytes < array.charged) credit(array.charged - bytes);
  array.charged = bytes;
  std::vector<Value> old = std::move(array.elements);
  array.elements = std::vector<Value>(count);
  array.dimensions = std::move(dimensions);
}

void Heap::account(Array& array) {
  const std::size_t bytes = array.elements.capacity() * sizeof(Value);
  if (bytes > array.charged) charge(bytes - array.charged);
  if (bytes < array.charged) credit(array.charged - bytes);
  array.charged = bytes;
}

void Heap::free_text(Text* text) {
  credit(sizeof(Text) + text->capacity);
  std::free(text);
}

void Heap::free_array(Array* array) {
  push_dead(dead_arrays_, array);
  if (!draining_) drain();
}

void Heap::free_object(Object* object) {
  if (object->wants_terminate && !ending_) {
    object->references = 1;  // the waiting list's
    object->next_waiting = nullptr;
    (first_waiting_ == nullptr ? first_waiting_ : last_waiting_->next_waiting) = object;
    last_waiting_ = object;
    return;
  }
  push_dead(dead_objects_, object);
  if (!draining_) drain();
}

Object* Heap::take_waiting() {
  Object* objects = first_waiting_;
  first_waiting_ = last_waiting_ = nullptr;
  return objects;
}

void Heap::put_back(Object* objects) {
  if (objects == nullptr) return;
  Object* last = objects;
  while (last->next_waiting != nullptr) last = last->next_waiting;
  last->next_waiting = first_waiting_;
  if (first_waiting_ == nullptr) last_waiting_ = last;
  first_waiting_ = objects;
}

void Heap::drain() {
  draining_ = true;
  while (dead_arrays_ != nullptr || dead_objects_ != nullptr) {
    if (Counted* item = pop_dead(dead_arrays_); item != nullptr) {
      Array* array = static_cast<Array*>(item);
      credit(sizeof(Array) + array->charged);
      for (Value& element : array->elements) element.reset();  // the first goes first
      delete array;
    } else {
      Counted* dead = pop_dead(dead_objects_);
      dead->heap = this;
      delete static_cast<Object*>(dead);
    }
  }
  draining_ = false;
}

void Heap::add_object(Object& object) {
  object.next_object = objects_;
  if (objects_ != nullptr) objects_->previous_object = &object;
  objects_ = &object;
}

void Heap::remove_object(Object& object) {
  (object.previous_object == nullptr ? objects_ : object.previous_object->next_object) = object.next_object;
  if (object.next_object != nullptr) object.next_object->previous_object = object.previous_object;
}

void Heap::break_cycles() {
  ending_ = true;
  for (Object* waiting = take_waiting(); waiting != nullptr;) {
    Object* next = waiting->next_waiting;
    Value::adopt(waiting);
    waiting = next;
  }
  // Clearing one object may free any other, so the walk holds the one it is at, and the next one before it lets go.
  Value here = Value::share(objects_);
  while (here.object() != nullptr) {
    here.object()->clear();
    here = Value::share(here.object()->next_object);
  }
}

}  // namespace pv::vbscript
