#include "vbscript/symbols.h"

#include "vbscript/characters.h"

namespace pv::vbscript {
namespace {

std::uint32_t hash_of(std::string_view name) {
  std::uint32_t hash = 2166136261U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(lower(c))) * 16777619U;
  return hash ^ (hash >> 15U);
}

bool same(std::string_view lower_name, std::string_view name) {
  if (lower_name.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (lower_name[i] != lower(name[i])) return false;
  }
  return true;
}

Symbol* look_in(Symbol* bucket, std::uint32_t hash, std::string_view name) {
  while (bucket != nullptr && (bucket->hash != hash || !same(bucket->name, name))) bucket = bucket->next;
  return bucket;
}

}  // namespace

Symbol* SymbolTable::find(std::string_view name) const {
  const std::uint32_t hash = hash_of(name);
  return look_in(buckets_[hash & (buckets_.size() - 1)], hash, name);
}

Symbol* SymbolTable::intern(std::string_view name) {
  const std::uint32_t hash = hash_of(name);
  if (Symbol* known = look_in(buckets_[hash & (buckets_.size() - 1)], hash, name); known != nullptr) return known;
  if (size_ >= buckets_.size()) grow();
  auto* symbol = arena_.make<Symbol>();
  symbol->hash = hash;
  symbol->spelling = arena_.copy(name);
  char* lowered = arena_.make_text(name.size());
  for (std::size_t i = 0; i < name.size(); ++i) lowered[i] = lower(name[i]);
  symbol->name = {lowered, name.size()};
  Symbol*& bucket = buckets_[hash & (buckets_.size() - 1)];
  symbol->next = bucket;
  bucket = symbol;
  ++size_;
  return symbol;
}

std::string_view SymbolTable::global_name(std::uint32_t global) const {
  for (const Symbol* symbol : buckets_) {
    for (; symbol != nullptr; symbol = symbol->next) {
      if (symbol->global == global) return symbol->spelling;
    }
  }
  return {};
}

void SymbolTable::grow() {
  std::vector<Symbol*> wider(buckets_.size() * 4);
  for (Symbol* symbol : buckets_) {
    while (symbol != nullptr) {
      Symbol* next = symbol->next;
      Symbol*& bucket = wider[symbol->hash & (wider.size() - 1)];
      symbol->next = bucket;
      bucket = symbol;
      symbol = next;
    }
  }
  buckets_ = std::move(wider);
}

}  // namespace pv::vbscript
