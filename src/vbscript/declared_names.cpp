#include "vbscript/declared_names.h"

#include <utility>

#include "vbscript/characters.h"

namespace pv::vbscript {
namespace {

constexpr std::size_t kFirstSlots = 16;

std::uint32_t hash_of(std::string_view name) {
  std::uint32_t hash = 2166136261;
  for (const char byte : name) hash = (hash ^ static_cast<unsigned char>(lower(byte))) * 16777619;
  return hash;
}

}  // namespace

DeclaredNames::Slot& DeclaredNames::find(std::string_view name, std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].declared.uses != 0 && (slots_[at].hash != hash || !same_word(slots_[at].name, name))) {
    at = (at + 1) & mask;
  }
  return slots_[at];
}

void DeclaredNames::grow() {
  std::vector<Slot> old = std::exchange(slots_, {});
  slots_.resize(old.empty() ? kFirstSlots : old.size() * 2);
  for (const Slot& slot : old) {
    if (slot.declared.uses != 0) find(slot.name, slot.hash) = slot;
  }
}

DeclaredName& DeclaredNames::at(std::string_view name) {
  if (used_ * 4 >= slots_.size() * 3) grow();
  const std::uint32_t hash = hash_of(name);
  Slot& slot = find(name, hash);
  if (slot.declared.uses == 0) {
    ++used_;
    slot = {name, {}, hash};
  }
  return slot.declared;
}

}  // namespace pv::vbscript
