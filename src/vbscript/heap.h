// The memory of one engine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "vbscript/value.h"

namespace pv::vbscript {

// All texts, arrays and objects of one engine: counts their bytes against kMaxHeapBytes, and frees what is in cycles
// with the engine. Freeing is never recursive, however deep arrays and objects lie in one another, and never runs a
// script's code: an object with a Class_Terminate waits until the machine has run it between two instructions.
class Heap {
 public:
  Heap() = default;
  ~Heap();
  Heap(const Heap&) = delete;
  Heap& operator=(const Heap&) = delete;

  // Throw RuntimeError 14 or 7 beyond the limits.
  Text* new_text(std::string_view bytes);
  Text* new_text_of_size(std::size_t length, std::size_t capacity);  // not initialised; length <= capacity
  Array* new_array();                                                // not dimensioned
  Array* new_array(std::vector<Value> elements);                     // of one dimension; accounts for the elements
  // Gives `array` what `bounds` (upper bounds) say, with every element Empty; throws 7 or 9 for bad bounds.
  void dimension(Array& array, const std::vector<std::int32_t>& bounds);
  // Accounts for the elements that `array` has now.
  void account(Array& array);
  // Accounts for `bytes` more (or fewer) held by an object; throws 7 beyond the limit.
  void charge(std::size_t bytes);
  void credit(std::size_t bytes) { bytes_ -= bytes; }
  std::size_t bytes() const { return bytes_; }

  Value text(std::string_view bytes) { return Value::adopt(new_text(bytes)); }
  Value array(std::vector<Value> elements) { return Value::adopt(new_array(std::move(elements))); }

  // What Value calls for the last reference.
  void free_text(Text* text);
  void free_array(Array* array);
  void free_object(Object* object);

  // The list of all live objects, for the end of the engine.
  void add_object(Object& object);
  void remove_object(Object& object);

  // Objects whose Class_Terminate is due, the oldest first, linked by next_waiting; each holds one reference, which the
  // taker gets. What is not done goes back in front of those that wait by then.
  bool terminate_waiting() const { return first_waiting_ != nullptr; }
  Object* take_waiting();
  void put_back(Object* objects);

  // Lets go of what every object and array holds, without Class_Terminate: what lies in cycles is freed.
  void break_cycles();

 private:
  void drain();

  std::size_t bytes_ = 0;
  bool draining_ = false;
  bool ending_ = false;
  Text* empty_ = nullptr;
  // Their last reference went while another was being freed; linked through `heap`, which they need no more.
  Counted* dead_arrays_ = nullptr;
  Counted* dead_objects_ = nullptr;
  Object* objects_ = nullptr;
  Object* first_waiting_ = nullptr;
  Object* last_waiting_ = nullptr;
};

}  // namespace pv::vbscript
