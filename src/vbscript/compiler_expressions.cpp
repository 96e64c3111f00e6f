// Expressions. Long rows of operators lean to the left, as long as the source allows, so they are walked in a loop.
#include <algorithm>

#include "vbscript/compiler_state.h"
#include "vbscript/operators.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Parts that one instruction joins.
constexpr std::size_t kPartsAtOnce = 100;

Op op_of(ast::BinaryOp op) {
  switch (op) {
    case ast::BinaryOp::kPower:
      return Op::kPower;
    case ast::BinaryOp::kMultiply:
      return Op::kMultiply;
    case ast::BinaryOp::kDivide:
      return Op::kDivide;
    case ast::BinaryOp::kDivideWhole:
      return Op::kDivideWhole;
    case ast::BinaryOp::kModulo:
      return Op::kModulo;
    case ast::BinaryOp::kAdd:
      return Op::kAdd;
    case ast::BinaryOp::kSubtract:
      return Op::kSubtract;
    case ast::BinaryOp::kConcatenate:
      return Op::kConcatenate;
    case ast::BinaryOp::kEqual:
      return Op::kEqual;
    case ast::BinaryOp::kNotEqual:
      return Op::kNotEqual;
    case ast::BinaryOp::kLess:
      return Op::kLess;
    case ast::BinaryOp::kGreater:
      return Op::kGreater;
    case ast::BinaryOp::kLessEqual:
      return Op::kLessEqual;
    case ast::BinaryOp::kGreaterEqual:
      return Op::kGreaterEqual;
    case ast::BinaryOp::kIs:
      return Op::kIs;
    case ast::BinaryOp::kAnd:
      return Op::kAnd;
    case ast::BinaryOp::kOr:
      return Op::kOr;
    case ast::BinaryOp::kXor:
      return Op::kXor;
    case ast::BinaryOp::kEqv:
      return Op::kEqv;
    case ast::BinaryOp::kImp:
      return Op::kImp;
  }
  return Op::kAdd;
}

bool is_comparison(Op op) {
  return op >= Op::kEqual && op <= Op::kGreaterEqual;
}

Op shifted(Op first, Op comparison) {
  return static_cast<Op>(static_cast<int>(first) + static_cast<int>(comparison) - static_cast<int>(Op::kEqual));
}

}  // namespace

Value Compiler::literal_value(const ast::Expr& expression) {
  if (expression.kind == ast::ExprKind::kUnary) {
    const auto& unary = static_cast<const ast::Unary&>(expression);
    Value operand = literal_value(*unary.operand);
    if (unary.op == ast::UnaryOp::kPlus) return operand;
    return unary.op == ast::UnaryOp::kNot ? logical_not(machine_.engine(), operand)
                                          : negate(machine_.engine(), operand);
  }
  if (expression.kind == ast::ExprKind::kParenthesised) {
    return literal_value(*static_cast<const ast::Parenthesised&>(expression).operand);
  }
  const auto& literal = static_cast<const ast::Literal&>(expression);
  switch (literal.literal) {
    case ast::LiteralKind::kEmpty:
      return {};
    case ast::LiteralKind::kNull:
      return Value::null();
    case ast::LiteralKind::kNothing:
      return Value::adopt(static_cast<Object*>(nullptr));
    case ast::LiteralKind::kTrue:
      return Value::boolean(true);
    case ast::LiteralKind::kFalse:
      return Value::boolean(false);
    case ast::LiteralKind::kInteger:
      return Value::integer(static_cast<std::int16_t>(literal.number));
    case ast::LiteralKind::kLong:
      return Value::of_long(literal.number);
    case ast::LiteralKind::kDouble:
      return Value::of_double(literal.real);
    case ast::LiteralKind::kDate:
      return Value::date(literal.real);
    case ast::LiteralKind::kText:
      return machine_.heap().text(literal.text);
  }
  return {};
}

Operand Compiler::unary(const ast::Unary& unary, Operand into) {
  if (unary.op == ast::UnaryOp::kNegate && unary.operand->kind == ast::ExprKind::kLiteral) {
    const auto kind = static_cast<const ast::Literal&>(*unary.operand).literal;
    if (kind == ast::LiteralKind::kInteger || kind == ast::LiteralKind::kLong || kind == ast::LiteralKind::kDouble) {
      return constant(literal_value(unary));
    }
  }
  constexpr Op kOps[] = {Op::kNegate, Op::kPlus, Op::kNot};
  const std::size_t kept = next_temporary_;
  const Operand operand = compile(*unary.operand, Want::kValue);
  next_temporary_ = kept;
  const Operand result = result_place(into);
  emit(kOps[static_cast<int>(unary.op)], result, operand);
  return result;
}

// Whether evaluating it may run the script's own code, which may change any variable. An element or a default property
// of a variable does not count: it is mostly an array's or dictionary's.
bool Compiler::may_run_code(const ast::Expr& expression) {
  const ast::Expr* e = &expression;
  for (;;) {
    switch (e->kind) {
      case ast::ExprKind::kMember:
      case ast::ExprKind::kNew:
        return true;
      case ast::ExprKind::kName: {
        const auto kind = resolve(intern(static_cast<const ast::Name*>(e)->name)).kind;
        return kind == Resolved::Kind::kProcedure || kind == Resolved::Kind::kMember || kind == Resolved::Kind::kHost ||
               kind == Resolved::Kind::kSpecial;
      }
      case ast::ExprKind::kIndex: {
        const auto* index = static_cast<const ast::Index*>(e);
        for (const ast::Expr* a = index->arguments.first; a != nullptr; a = a->next) {
          if (may_run_code(*a)) return true;
        }
        if (index->callee->kind == ast::ExprKind::kName) {
          const Resolved name = resolve(intern(static_cast<const ast::Name*>(index->callee)->name));
          if (is_own_result(name)) return true;
        }
        e = index->callee;
        break;
      }
      case ast::ExprKind::kUnary:
        e = static_cast<const ast::Unary*>(e)->operand;
        break;
      case ast::ExprKind::kParenthesised:
        e = static_cast<const ast::Parenthesised*>(e)->operand;
        break;
      case ast::ExprKind::kBinary:
        if (may_run_code(*static_cast<const ast::Binary*>(e)->right)) return true;
        e = static_cast<const ast::Binary*>(e)->left;
        break;
      default:
        return false;
    }
  }
}

// A variable on the left keeps the value it has now, though a function on the right may change it. Not where the
// result goes to the same variable: s = s & f() appends in place.
Operand Compiler::left_operand(const ast::Expr& left, std::span<const ast::Expr* const> rights, Operand into) {
  const Operand operand = compile(left, Want::kValue);
  if (is_temporary(operand) || kind_of(operand) == OperandKind::kConstant || operand == into) return operand;
  if (std::none_of(rights.begin(), rights.end(), [this](const ast::Expr* e) { return may_run_code(*e); })) {
    return operand;
  }
  const Operand kept = temporary();
  emit(Op::kLet, kept, operand);
  return kept;
}

Operand Compiler::concatenate(std::span<const ast::Binary* const> parts, Operand left, Operand into) {
  while (!parts.empty()) {
    const std::size_t count = std::min(parts.size(), kPartsAtOnce);
    const bool last = count == parts.size();
    const Operand result = last && into != kNoOperand ? into : is_temporary(left) ? left : temporary();
    const std::size_t kept = next_temporary_;
    const Operand window = temporaries(count);
    for (std::size_t i = 0; i < count; ++i) {
      compile_into(*parts[i]->right, Want::kValue, behind(window, i));
    }
    parts = parts.subspan(count);
    next_temporary_ = kept;
    emit(Op::kConcatenateMany, result, left, window, static_cast<int>(count));
    left = result;
  }
  return left;
}

Operand Compiler::binary(const ast::Binary& top, Operand into) {
  std::vector<const ast::Binary*> rows;  // the outermost first
  const ast::Expr* left_most = &top;
  while (left_most->kind == ast::ExprKind::kBinary) {
    rows.push_back(static_cast<const ast::Binary*>(left_most));
    left_most = rows.back()->left;
  }
  std::reverse(rows.begin(), rows.end());
  const std::size_t kept = next_temporary_;
  const auto want_of = [](const ast::Binary& row) {
    return row.op == ast::BinaryOp::kIs ? Want::kAnything : Want::kValue;
  };
  const auto joined_from = [&rows](std::size_t first) {
    std::size_t joined = 0;
    while (first + joined < rows.size() && rows[first + joined]->op == ast::BinaryOp::kConcatenate) ++joined;
    return joined;
  };
  std::vector<const ast::Expr*> first_rights;  // of the first instruction
  const std::size_t first_taken = std::max<std::size_t>(joined_from(0), 1);
  for (std::size_t i = 0; i < first_taken; ++i) first_rights.push_back(rows[i]->right);
  Operand left = want_of(*rows.front()) == Want::kAnything
                     ? compile(*left_most, Want::kAnything)
                     : left_operand(*left_most, first_rights, rows.size() == first_rights.size() ? into : kNoOperand);
  for (std::size_t i = 0; i < rows.size();) {
    const std::size_t joined = joined_from(i);
    const std::size_t taken = std::max<std::size_t>(joined, 1);
    const Operand target = i + taken == rows.size() ? into : kNoOperand;
    if (joined > 1) {
      left = concatenate(std::span(rows).subspan(i, joined), left, target);
    } else {
      const ast::Binary& row = *rows[i];
      const Operand right = compile(*row.right, want_of(row));
      next_temporary_ = kept;
      const Operand result = result_place(target);
      int flags = 0;
      if (row.op == ast::BinaryOp::kIs) {
        flags = (is_temporary(left) ? kConsumeFirst : 0) | (is_temporary(right) ? kConsumeSecond : 0);
      }
      emit(op_of(row.op), result, left, right, flags);
      left = result;
    }
    i += taken;
  }
  return left;
}

Operand Compiler::compile(const ast::Expr& expression, Want want, Operand into) {
  switch (expression.kind) {
    case ast::ExprKind::kLiteral:
      return constant(literal_value(expression));
    case ast::ExprKind::kName:
    case ast::ExprKind::kMember:
    case ast::ExprKind::kIndex:
      return chain(expression, want, into);
    case ast::ExprKind::kUnary:
      return unary(static_cast<const ast::Unary&>(expression), into);
    case ast::ExprKind::kBinary:
      return binary(static_cast<const ast::Binary&>(expression), into);
    case ast::ExprKind::kParenthesised:
      return compile(*static_cast<const ast::Parenthesised&>(expression).operand, want, into);
    case ast::ExprKind::kNew:
    case ast::ExprKind::kMe: {
      // Class_Initialize runs before anybody else has the object: `into` is no variable where objects are wanted.
      const Operand object = want == Want::kAnything ? result_place(into) : temporary();
      if (expression.kind == ast::ExprKind::kMe) {
        emit(Op::kMe, object);
      } else {
        emit_index(Op::kNew, object, name_index(intern(static_cast<const ast::New&>(expression).class_name)));
      }
      if (want == Want::kValue) emit(Op::kLet, object, object);
      return object;
    }
    case ast::ExprKind::kOmitted:
      return constant(Value::missing());
    case ast::ExprKind::kWithSubject:
      break;
  }
  for (std::size_t i = enclosing_.size(); i-- > 0;) {
    if (enclosing_[i].kind == Enclosing::Kind::kWith) return enclosing_[i].object;
  }
  raise_at_run_time(static_cast<std::int32_t>(ErrorCode::kInvalidReference), nullptr);
  return constant({});
}

void Compiler::compile_into(const ast::Expr& expression, Want want, Operand into) {
  const std::size_t kept = next_temporary_;
  const Operand place = compile(expression, want, into);
  next_temporary_ = kept;
  if (place != into) emit(want == Want::kValue ? Op::kLet : Op::kCopy, into, place);
}

std::size_t Compiler::conditional_jump(const ast::Expr& condition, Op first_comparison, Op other) {
  const std::size_t kept = next_temporary_;
  const ast::Expr* bare = &condition;
  while (bare->kind == ast::ExprKind::kParenthesised) bare = static_cast<const ast::Parenthesised*>(bare)->operand;
  if (bare->kind == ast::ExprKind::kBinary) {
    const auto& row = static_cast<const ast::Binary&>(*bare);
    if (is_comparison(op_of(row.op))) {
      const ast::Expr* const rights[] = {row.right};
      const Operand left = left_operand(*row.left, rights, kNoOperand);
      const Operand right = compile(*row.right, Want::kValue);
      next_temporary_ = kept;
      return emit(shifted(first_comparison, op_of(row.op)), left, right);
    }
  }
  const Operand value = compile(*bare, Want::kValue);
  next_temporary_ = kept;
  return emit(other, value);
}

std::size_t Compiler::jump_unless(const ast::Expr& condition) {
  return conditional_jump(condition, Op::kJumpUnlessEqual, Op::kJumpUnlessTrue);
}

std::size_t Compiler::jump_if(const ast::Expr& condition) {
  return conditional_jump(condition, Op::kJumpIfEqual, Op::kJumpIfTrue);
}

}  // namespace pv::vbscript
