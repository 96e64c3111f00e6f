#include "vbscript/dictionary.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <utility>

#include "vbscript/code_page.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/heap.h"
#include "vbscript/limits.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

using Arguments = std::span<const Value>;

constexpr auto kKeyExists = static_cast<ErrorCode>(457);

bool is_number(const Value& key) {
  switch (key.type()) {
    case Type::kInteger:
    case Type::kLong:
    case Type::kByte:
    case Type::kBoolean:
    case Type::kSingle:
    case Type::kDouble:
    case Type::kDate:
    case Type::kCurrency:
      return true;
    default:
      return false;
  }
}

double number_of(const Value& key) {
  switch (key.type()) {
    case Type::kSingle:
    case Type::kDouble:
    case Type::kDate:
      return key.real();
    case Type::kCurrency:
      return static_cast<double>(key.scaled()) / 10000;
    default:
      return key.number();
  }
}

std::uint64_t mixed(std::uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15U;
  return bits ^ (bits >> 32U);
}

// Keys and items in the order they were added, found through a table of positions. A removed entry leaves a gap that
// the next growth closes.
class Dictionary : public NativeObject {
 public:
  explicit Dictionary(Heap& heap);

  Value use_default(Engine& engine, Access access, Arguments arguments) override;
  std::vector<Value> items(Engine& engine) override { return keys(engine); }
  void clear() override {
    entries_.clear();
    slots_.clear();
    live_ = 0;
    heap->credit(std::exchange(charged_, 0));
  }
  ~Dictionary() override { heap->credit(charged_); }

  Value* find(const Value& key);
  Value& add(const Value& key);  // the key must not be there
  bool remove(const Value& key);
  bool rename(const Value& from, const Value& to);
  std::int32_t count() const { return static_cast<std::int32_t>(live_); }
  std::vector<Value> keys(Engine& engine) const;
  std::vector<Value> values(Engine& engine) const;
  std::int32_t compare_mode() const { return ignore_case_ ? 1 : 0; }
  void set_compare_mode(std::int32_t mode);

 private:
  struct Entry {
    Value key;
    Value item;
    std::uint64_t hash = 0;
    bool live = true;
  };
  static constexpr std::uint32_t kFree = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  std::uint64_t hash_of(const Value& key) const;
  std::uint64_t hash_of(std::string_view text) const;
  bool same(const Value& a, const Value& b) const;
  std::size_t position_of(const Value& key, std::uint64_t hash) const;
  void grow();
  void index_entry(std::size_t position);

  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  // positions in entries_; a power of two, at most half used
  std::size_t live_ = 0;
  std::size_t charged_ = 0;  // bytes that the heap counts for this
  bool ignore_case_ = false;
};

std::uint64_t Dictionary::hash_of(std::string_view text) const {
  std::uint64_t hash = text.size();
  if (!ignore_case_) {
    for (; text.size() >= 8; text.remove_prefix(8)) {
      std::uint64_t word = 0;
      text.copy(reinterpret_cast<char*>(&word), 8);
      hash = mixed(hash ^ word);
    }
  }
  for (const char c : text) hash = mixed(hash ^ static_cast<unsigned char>(ignore_case_ ? lower_case(c) : c));
  return hash;
}

std::uint64_t Dictionary::hash_of(const Value& key) const {
  if (key.is(Type::kString)) return hash_of(key.view());
  if (key.is(Type::kObject)) return mixed(reinterpret_cast<std::uintptr_t>(key.object()));
  if (is_number(key)) return mixed(std::bit_cast<std::uint64_t>(number_of(key) + 0.0));  // -0 is 0
  return static_cast<std::uint64_t>(key.type());
}

bool Dictionary::same(const Value& a, const Value& b) const {
  if (a.is(Type::kString) && b.is(Type::kString)) {
    return ignore_case_ ? equal_ignoring_case(a.view(), b.view()) : a.view() == b.view();
  }
  if (is_number(a) && is_number(b)) return number_of(a) == number_of(b);
  if (a.type() != b.type()) return false;
  if (a.is(Type::kObject)) return a.object() == b.object();
  return !a.is(Type::kError) || a.number() == b.number();
}

std::size_t Dictionary::position_of(const Value& key, std::uint64_t hash) const {
  if (slots_.empty()) return kNone;
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = static_cast<std::size_t>(hash) & mask;; slot = (slot + 1) & mask) {
    const std::uint32_t position = slots_[slot];
    if (position == kFree) return kNone;
    const Entry& entry = entries_[position];
    if (entry.live && entry.hash == hash && same(entry.key, key)) return position;
  }
}

void Dictionary::index_entry(std::size_t position) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = static_cast<std::size_t>(entries_[position].hash) & mask;
  while (slots_[slot] != kFree) slot = (slot + 1) & mask;
  slots_[slot] = static_cast<std::uint32_t>(position);
}

// Room for one entry more; gaps are closed.
void Dictionary::grow() {
  if (2 * (entries_.size() + 1) <= slots_.size()) return;
  if (live_ >= kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
  std::erase_if(entries_, [](const Entry& entry) { return !entry.live; });
  const std::size_t slots = std::bit_ceil(4 * (entries_.size() + 2));
  const std::size_t bytes = slots * (sizeof(std::uint32_t) + sizeof(Entry) / 2);
  if (bytes > charged_) {
    heap->charge(bytes - charged_);
    charged_ = bytes;
  }
  slots_.assign(slots, kFree);
  for (std::size_t i = 0; i < entries_.size(); ++i) index_entry(i);
}

Value* Dictionary::find(const Value& key) {
  const std::size_t position = position_of(key, hash_of(key));
  return position == kNone ? nullptr : &entries_[position].item;
}

Value& Dictionary::add(const Value& key) {
  grow();
  entries_.push_back({key, Value(), hash_of(key)});
  index_entry(entries_.size() - 1);
  ++live_;
  return entries_.back().item;
}

bool Dictionary::remove(const Value& key) {
  const std::size_t position = position_of(key, hash_of(key));
  if (position == kNone) return false;
  entries_[position].live = false;
  --live_;
  entries_[position].key = Value();
  entries_[position].item = Value();
  return true;
}

// The entry keeps its place.
bool Dictionary::rename(const Value& from, const Value& to) {
  const std::size_t position = position_of(from, hash_of(from));
  if (position == kNone) return false;
  Entry& entry = entries_[position];
  entry.key = to;
  entry.hash = hash_of(to);
  slots_.assign(slots_.size(), kFree);
  for (std::size_t i = 0; i < entries_.size(); ++i) index_entry(i);
  return true;
}

std::vector<Value> Dictionary::keys(Engine& engine) const {
  engine.charge_steps(static_cast<std::int64_t>(entries_.size()));
  std::vector<Value> keys;
  keys.reserve(live_);
  for (const Entry& entry : entries_) {
    if (entry.live) keys.push_back(entry.key);
  }
  return keys;
}

std::vector<Value> Dictionary::values(Engine& engine) const {
  engine.charge_steps(static_cast<std::int64_t>(entries_.size()));
  std::vector<Value> values;
  values.reserve(live_);
  for (const Entry& entry : entries_) {
    if (entry.live) values.push_back(entry.item);
  }
  return values;
}

void Dictionary::set_compare_mode(std::int32_t mode) {
  if (live_ > 0 || mode < 0 || mode > 2) raise(ErrorCode::kInvalidCall);
  clear();
  ignore_case_ = mode != 0;
}

// ---- Members, as scripts use them

Dictionary& self_of(Object& self) {
  return static_cast<Dictionary&>(self);
}

// A key; hashing a long one takes its time.
const Value& key_argument(Engine& engine, const Value& key) {
  if (key.is(Type::kString) && key.view().size() > 256) {
    engine.charge_steps(static_cast<std::int64_t>(key.view().size() / 16));
  }
  if (key.is(Type::kArray)) raise(ErrorCode::kInvalidCall);
  return key;
}

Value add(Engine& engine, Object& self, Arguments arguments) {
  const Value& key = key_argument(engine, arguments[0]);
  if (self_of(self).find(key) != nullptr) raise(kKeyExists);
  self_of(self).add(key) = arguments[1];
  return {};
}

Value exists(Engine& engine, Object& self, Arguments arguments) {
  return Value::boolean(self_of(self).find(key_argument(engine, arguments[0])) != nullptr);
}

// A key that is not there is added, with nothing in it.
Value get_item(Engine& engine, Object& self, Arguments arguments) {
  Value* item = self_of(self).find(key_argument(engine, arguments[0]));
  return item != nullptr ? *item : self_of(self).add(arguments[0]);
}

Value set_item(Engine& engine, Object& self, Arguments arguments) {
  Value* item = self_of(self).find(key_argument(engine, arguments[0]));
  (item != nullptr ? *item : self_of(self).add(arguments[0])) = arguments[1];
  return {};
}

Value let_item(Engine& engine, Object& self, Arguments arguments) {
  const Value plain[] = {arguments[0], plain_value(engine, arguments[1])};
  return set_item(engine, self, plain);
}

Value let_key(Engine& engine, Object& self, Arguments arguments) {
  const Value& to = key_argument(engine, arguments[1]);
  if (self_of(self).find(key_argument(engine, arguments[0])) == nullptr) raise(ErrorCode::kElementNotFound);
  if (self_of(self).find(to) != nullptr) raise(kKeyExists);
  self_of(self).rename(arguments[0], to);
  return {};
}

Value remove(Engine& engine, Object& self, Arguments arguments) {
  if (!self_of(self).remove(key_argument(engine, arguments[0]))) raise(ErrorCode::kElementNotFound);
  return {};
}

Value remove_all(Engine&, Object& self, Arguments) {
  self_of(self).clear();
  return {};
}

Value count(Engine&, Object& self, Arguments) {
  return Value::of_long(self_of(self).count());
}

Value get_keys(Engine& engine, Object& self, Arguments) {
  return engine.heap().array(self_of(self).keys(engine));
}

Value get_items(Engine& engine, Object& self, Arguments) {
  return engine.heap().array(self_of(self).values(engine));
}

Value get_compare_mode(Engine&, Object& self, Arguments) {
  return Value::of_long(self_of(self).compare_mode());
}

Value let_compare_mode(Engine& engine, Object& self, Arguments arguments) {
  self_of(self).set_compare_mode(to_long(engine, arguments[0]));
  return {};
}

constexpr NativeMember kMembers[] = {
    {"add", Access::kGet, 2, 2, add},
    {"comparemode", Access::kGet, 0, 0, get_compare_mode},
    {"comparemode", Access::kLet, 0, 0, let_compare_mode},
    {"count", Access::kGet, 0, 0, count},
    {"exists", Access::kGet, 1, 1, exists},
    {"item", Access::kGet, 1, 1, get_item},
    {"item", Access::kLet, 1, 1, let_item},
    {"item", Access::kSet, 1, 1, set_item},
    {"items", Access::kGet, 0, 0, get_items},
    {"key", Access::kLet, 1, 1, let_key},
    {"keys", Access::kGet, 0, 0, get_keys},
    {"remove", Access::kGet, 1, 1, remove},
    {"removeall", Access::kGet, 0, 0, remove_all},
};

constexpr NativeClass kDictionary = {"Dictionary", kMembers, "item"};

Dictionary::Dictionary(Heap& heap) : NativeObject(heap, kDictionary) {}

Value Dictionary::use_default(Engine& engine, Access access, Arguments arguments) {
  const bool puts = access == Access::kLet || access == Access::kSet;
  if (arguments.size() != (puts ? 2U : 1U)) raise(ErrorCode::kWrongArgumentCount);
  if (!puts) return get_item(engine, *this, arguments);
  return access == Access::kLet ? let_item(engine, *this, arguments) : set_item(engine, *this, arguments);
}

}  // namespace

Object* new_dictionary(Engine& engine) {
  return new Dictionary(engine.heap());
}

}  // namespace pv::vbscript
