#include "vbscript/bytecode.h"

namespace pv::vbscript {

unsigned operands_of(Op op) {
  switch (op) {
    case Op::kData:
    case Op::kJump:
    case Op::kLoop:
    case Op::kReturn:
    case Op::kOnError:
    case Op::kClearErr:
    case Op::kRaise:
      return 0;
    case Op::kDataRegister:
    case Op::kLoadConstant:
    case Op::kGlobal:
    case Op::kLookUp:
    case Op::kClear:
    case Op::kMe:
    case Op::kJumpIfTrue:
    case Op::kJumpUnlessTrue:
    case Op::kNew:
    case Op::kErase:
      return 1;
    case Op::kExecute:
    case Op::kRandomize:
      return 2;
    case Op::kCall:
    case Op::kCallMethod:
    case Op::kCallHost:
    case Op::kCallBuiltin:
      return 1 | 4;
    case Op::kLet:
    case Op::kCopy:
    case Op::kSet:
    case Op::kRefer:
    case Op::kNegate:
    case Op::kPlus:
    case Op::kNot:
    case Op::kJumpIfEqual:
    case Op::kJumpIfNotEqual:
    case Op::kJumpIfLess:
    case Op::kJumpIfGreater:
    case Op::kJumpIfLessEqual:
    case Op::kJumpIfGreaterEqual:
    case Op::kJumpUnlessEqual:
    case Op::kJumpUnlessNotEqual:
    case Op::kJumpUnlessLess:
    case Op::kJumpUnlessGreater:
    case Op::kJumpUnlessLessEqual:
    case Op::kJumpUnlessGreaterEqual:
    case Op::kForNext:
    case Op::kForEachPrepare:
    case Op::kForEachNext:
    case Op::kWith:
    case Op::kMemberElement:
    case Op::kCallBuiltin1:
    case Op::kDimArray:
    case Op::kReDim:
    case Op::kEval:
    case Op::kGetRef:
      return 1 | 2;
    case Op::kMemberStore:
    case Op::kIndexStoreMany:
      return 1 | 4;
    default:
      return 1 | 2 | 4;
  }
}

const Member* Class::find(const Symbol* wanted) const {
  const std::size_t mask = buckets.size() - 1;
  for (std::size_t at = wanted->hash & mask; buckets[at] != 0; at = (at + 1) & mask) {
    const Member& member = members[buckets[at] - std::size_t{1}];
    if (member.name == wanted) return &member;
  }
  return nullptr;
}

}  // namespace pv::vbscript
