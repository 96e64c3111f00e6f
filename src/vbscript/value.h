// Values of VBScript: 16 bytes each, texts, arrays and objects on the engine's heap, counted.
//
// Everything here belongs to one engine and to one thread. Copying a Value costs no allocation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace pv::vbscript {

class Heap;
class Object;

// Counted items carry the bit kCountedBit, so that a copy of a number tests one bit. The lower bits are VarType's
// number.
inline constexpr std::uint8_t kCountedBit = 0x40;
enum class Type : std::uint8_t {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,  // 16 bits, held in `number`
  kLong = 3,     // 32 bits, held in `number`
  kSingle = 4,   // held in `real`, rounded to single precision
  kDouble = 5,
  kCurrency = 6,  // ten-thousandths, held in `scaled`
  kDate = 7,      // days since 30 December 1899, held in `real`
  kError = 10,    // a code, held in `number`; kMissingArgument stands for an omitted argument
  kBoolean = 11,  // -1 or 0, held in `number`
  kByte = 17,     // held in `number`
  kString = kCountedBit | 8,
  kObject = kCountedBit | 9,  // nullptr is Nothing
  kArray = kCountedBit | 16,
  // The machine's alone; operators, built-ins and objects never see them.
  kArrayLock = kCountedBit | 24,  // an array whose `locks` this value raised: For Each, an element passed ByRef
  kReference = 0x80,              // another Value: a ByRef parameter
};

inline constexpr std::int32_t kMissingArgument = static_cast<std::int32_t>(0x80020004);

// What texts, arrays and objects have in common. Not virtual: texts are small and many.
struct Counted {
  explicit Counted(Heap* owner) : heap(owner) {}
  std::uint32_t references = 1;
  Heap* heap;
};

// A text in Windows-1252. Immutable once another Value shares it; a text with one reference may be appended to in
// place.
struct Text : Counted {
  using Counted::Counted;
  std::uint32_t length = 0;
  std::uint32_t capacity = 0;  // bytes behind this header

  char* data() { return reinterpret_cast<char*>(this + 1); }
  const char* data() const { return reinterpret_cast<const char*>(this + 1); }
  std::string_view view() const { return {data(), length}; }
};

struct Array;

class Value {
 public:
  Value() = default;
  Value(const Value& other) : type_(other.type_), payload_(other.payload_) { retain(); }
  Value(Value&& other) noexcept : type_(other.type_), payload_(other.payload_) { other.type_ = Type::kEmpty; }
  Value& operator=(const Value& other) {
    Value copy(other);
    swap(copy);
    return *this;
  }
  // What this held is released after it holds the new value: a Class_Terminate that looks at it sees the new one.
  Value& operator=(Value&& other) noexcept {
    Value moved(std::move(other));
    swap(moved);
    return *this;
  }
  ~Value() { release(); }

  void swap(Value& other) noexcept {
    std::swap(type_, other.type_);
    std::swap(payload_, other.payload_);
  }

  static Value null() { return Value(Type::kNull); }
  static Value integer(std::int16_t number) { return Value(Type::kInteger, number); }
  static Value of_long(std::int32_t number) { return Value(Type::kLong, number); }
  static Value byte(std::uint8_t number) { return Value(Type::kByte, number); }
  static Value boolean(bool truth) { return Value(Type::kBoolean, truth ? -1 : 0); }
  static Value error(std::int32_t code) { return Value(Type::kError, code); }
  static Value missing() { return error(kMissingArgument); }
  static Value single(float real) { return Value(Type::kSingle, static_cast<double>(real)); }
  static Value of_double(double real) { return Value(Type::kDouble, real); }
  static Value date(double days) { return Value(Type::kDate, days); }
  static Value currency(std::int64_t ten_thousandths) {
    Value value(Type::kCurrency);
    value.payload_.scaled = ten_thousandths;
    return value;
  }
  // Take over one reference.
  static Value adopt(Text* text) { return Value(Type::kString, text); }
  static Value adopt(Array* array);
  static Value adopt(Object* object);  // nullptr is Nothing
  // Shares an object.
  static Value share(Object* object);
  static Value lock(Array* array);  // shares it too
  static Value reference(Value& target) {
    Value value(Type::kReference);
    value.payload_.reference = &target;
    return value;
  }

  Type type() const { return type_; }
  bool is(Type type) const { return type_ == type; }
  bool is_missing() const { return type_ == Type::kError && payload_.number == kMissingArgument; }

  // Of the types that hold them alone.
  std::int32_t number() const { return payload_.number; }  // kInteger, kLong, kByte, kBoolean, kError
  double real() const { return payload_.real; }            // kSingle, kDouble, kDate
  std::int64_t scaled() const { return payload_.scaled; }  // kCurrency
  Text* text() const { return static_cast<Text*>(payload_.counted); }
  std::string_view view() const { return text()->view(); }  // kString
  Array* array() const;
  Object* object() const;
  Value* target() const { return payload_.reference; }

  // The value itself, or what it refers to.
  Value& resolved() { return type_ == Type::kReference ? *payload_.reference : *this; }
  const Value& resolved() const { return type_ == Type::kReference ? *payload_.reference : *this; }

  // Overwrite a value of a type that is not counted, as loops do.
  void set_number(Type type, std::int32_t number) {
    type_ = type;
    payload_.number = number;
  }
  void set_real(Type type, double real) {
    type_ = type;
    payload_.real = real;
  }
  void reset() {
    release();
    type_ = Type::kEmpty;
  }
  // The same for any value, over one that is plain().
  void replace_plain(const Value& other) {
    type_ = other.type_;
    payload_ = other.payload_;
    retain();
  }
  bool counted() const { return (static_cast<std::uint8_t>(type_) & kCountedBit) != 0; }
  // A number, date, Empty, Null…: overwriting it takes no more than that.
  bool plain() const { return static_cast<std::uint8_t>(type_) < kCountedBit; }

 private:
  explicit Value(Type type) : type_(type) {}
  Value(Type type, std::int32_t number) : type_(type) { payload_.number = number; }
  Value(Type type, double real) : type_(type) { payload_.real = real; }
  Value(Type type, Counted* item) : type_(type) { payload_.counted = item; }

  void retain() const {
    if (counted() && payload_.counted != nullptr) ++payload_.counted->references;
  }
  void release() {
    if (counted()) release_counted();
  }
  void release_counted() {
    Counted* item = payload_.counted;
    if (item != nullptr && (--item->references == 0 || type_ == Type::kArrayLock)) let_go();
  }
  void let_go();  // the rare rest of it

  Type type_ = Type::kEmpty;
  union Payload {
    std::int32_t number;
    double real;
    std::int64_t scaled = 0;
    Counted* counted;
    Value* reference;
  } payload_;
};
static_assert(sizeof(Value) == 16);

// An array has value semantics: assigning shares it, and who writes to a shared one gets a copy of its own first.
// Heap::new_array makes one of given elements; Heap::resize changes what an array accounts for.
struct Array : Counted {
  using Counted::Counted;
  struct Dimension {
    std::int32_t upper = -1;  // the lower bound is always 0; -1: no element
    std::size_t stride = 1;
  };
  std::vector<Dimension> dimensions;  // empty: declared without bounds and not yet dimensioned. First varies fastest.
  std::vector<Value> elements;
  std::size_t charged = 0;  // bytes that the heap counts for the elements
  bool fixed = false;       // "Dim a(5)": ReDim is error 10
  std::uint32_t locks = 0;  // For Each under way, or an element passed ByRef: ReDim and Erase are error 10

  // Every lock holds a reference as well, but does not make writing copy.
  bool shared() const { return references - locks > 1; }
};

inline Array* Value::array() const {
  return static_cast<Array*>(payload_.counted);
}

}  // namespace pv::vbscript
