#include "vbscript/value.h"

#include "vbscript/heap.h"
#include "vbscript/object.h"

namespace pv::vbscript {

Value Value::adopt(Array* array) {
  return Value(Type::kArray, array);
}

Value Value::adopt(Object* object) {
  return Value(Type::kObject, object);
}

Value Value::share(Object* object) {
  if (object != nullptr) ++object->references;
  return adopt(object);
}

Value Value::lock(Array* array) {
  ++array->references;
  ++array->locks;
  return Value(Type::kArrayLock, array);
}

Object* Value::object() const {
  return static_cast<Object*>(payload_.counted);
}

void Value::let_go() {
  Counted* item = payload_.counted;
  if (type_ == Type::kArrayLock) --static_cast<Array*>(item)->locks;
  if (item->references != 0) return;
  switch (type_) {
    case Type::kString:
      item->heap->free_text(static_cast<Text*>(item));
      break;
    case Type::kObject:
      item->heap->free_object(static_cast<Object*>(item));
      break;
    default:
      item->heap->free_array(static_cast<Array*>(item));
  }
}

}  // namespace pv::vbscript
