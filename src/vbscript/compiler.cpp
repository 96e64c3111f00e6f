#include "vbscript/compiler.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "vbscript/arena.h"
#include "vbscript/characters.h"
#include "vbscript/compiler_state.h"
#include "vbscript/parser.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// An equal number or text further back than this is not looked for: a long table of texts would cost its square.
constexpr std::size_t kConstantsLookedAt = 24;

bool same_constant(const Value& left, const Value& right) {
  if (left.type() != right.type()) return false;
  switch (left.type()) {
    case Type::kEmpty:
    case Type::kNull:
      return true;
    case Type::kDouble:
    case Type::kDate:
    case Type::kSingle:
      return left.real() == right.real() && std::signbit(left.real()) == std::signbit(right.real());
    case Type::kCurrency:
      return left.scaled() == right.scaled();
    case Type::kString:
      return left.view() == right.view();
    case Type::kObject:
      return left.object() == right.object();
    case Type::kArray:
    case Type::kArrayLock:
    case Type::kReference:
      return false;
    default:
      return left.number() == right.number();
  }
}

// Temporaries move behind the variables.
Operand placed(Operand operand, std::size_t variables) {
  if (kind_of(operand) != OperandKind::kRegister || index_of(operand) < kFirstTemporary) return operand;
  return pv::vbscript::operand(OperandKind::kRegister, index_of(operand) - kFirstTemporary + variables);
}

template <typename Item>
std::size_t index_in(std::vector<Item>& items, Item wanted) {
  const std::size_t first = items.size() > kConstantsLookedAt ? items.size() - kConstantsLookedAt : 0;
  for (std::size_t i = first; i < items.size(); ++i) {
    if (items[i] == wanted) return i;
  }
  items.push_back(wanted);
  return items.size() - 1;
}

ParseOptions options_for(const Surroundings* outer) {
  ParseOptions options;
  options.inside_class = outer != nullptr && outer->code->owner != nullptr;
  return options;
}

// The word Execute or ExecuteGlobal, be it in a text or comment.
bool mentions_execute(std::string_view source) {
  constexpr std::string_view kWord = "execute";
  const auto same = [](char left, char right) { return lower(left) == right; };
  auto at = source.begin();
  while ((at = std::search(at, source.end(), kWord.begin(), kWord.end(), same)) != source.end()) {
    const bool begins_word = at == source.begin() || !is_name_part(*std::prev(at));
    at += kWord.size();
    if (begins_word && (at == source.end() || !is_name_part(*at) || lower(*at) == 'g')) return true;
  }
  return false;
}

template <typename Build>
std::unique_ptr<Unit> compile_unit(Machine& machine, std::string_view source, const Surroundings* outer, Build build) {
  auto unit = std::make_unique<Unit>();
  Compiler compiler(machine, *unit, source, outer);
  build(compiler);
  compiler.commit();
  return unit;
}

}  // namespace

Compiler::Compiler(Machine& machine, Unit& unit, std::string_view source, const Surroundings* outer)
    : machine_(machine),
      unit_(unit),
      outer_(outer),
      may_execute_(mentions_execute(source)),
      text_stamp_(machine.next_stamp()) {
  instructions_.reserve(128);
  marks_.reserve(64);
  constants_.reserve(32);
}

Compiler::~Compiler() {
  for (std::size_t i = undo_constants_.size(); i-- > 0;) {
    machine_.global(undo_constants_[i].global) = std::move(undo_constants_[i].value);
  }
  for (std::size_t i = undo_.size(); i-- > 0;) {
    Symbol& symbol = *undo_[i];
    symbol.meaning = undo_values_[i].meaning;
    symbol.procedure = undo_values_[i].procedure;
    symbol.script_class = undo_values_[i].script_class;
    symbol.global = undo_values_[i].global;
  }
}

void Compiler::remember(Symbol* symbol) {
  undo_.push_back(symbol);
  undo_values_.push_back(*symbol);
}

void Compiler::too_much() const {
  throw CompileError{1001, at_};
}

void Compiler::begin(Code& code) {
  code_ = &code;
  stamp_ = machine_.next_stamp();
  next_temporary_ = last_temporary_ = statement_temporaries_ = kFirstTemporary;
  instructions_.clear();
  constants_.clear();
  marks_.clear();
  enclosing_.clear();
}

void Compiler::finish() {
  const std::size_t variables = code_->variable_names.size();
  const std::size_t registers = variables + (last_temporary_ - kFirstTemporary);
  if (registers >= kOperandIndices) too_much();
  for (Instruction& instruction : instructions_) {
    const unsigned operands = operands_of(instruction.op);
    if ((operands & 1U) != 0) instruction.a = placed(instruction.a, variables);
    if ((operands & 2U) != 0) instruction.b = placed(instruction.b, variables);
    if ((operands & 4U) != 0) instruction.c = placed(instruction.c, variables);
  }
  for (StatementMark& mark : marks_) {
    mark.temporaries = static_cast<std::uint16_t>(mark.temporaries - kFirstTemporary + variables);
  }
  code_->variables = static_cast<std::uint16_t>(variables);
  code_->registers = static_cast<std::uint16_t>(registers);
  code_->instructions.assign(instructions_.begin(), instructions_.end());
  code_->marks.assign(marks_.begin(), marks_.end());
  code_->constants.reserve(constants_.size());
  for (Value& constant : constants_) code_->constants.push_back(std::move(constant));
}

std::size_t Compiler::emit(Op op, Operand a, Operand b, Operand c, int extra) {
  instructions_.push_back({op, static_cast<std::int8_t>(extra), a, b, c});
  return instructions_.size() - 1;
}

void Compiler::emit_index(Op op, Operand a, std::size_t index) {
  emit(op, a, static_cast<std::uint16_t>(index), static_cast<std::uint16_t>(index >> 16U));
}

void Compiler::emit_data(std::uint16_t arguments, std::size_t index, std::uint8_t flags) {
  emit(Op::kData, arguments, static_cast<std::uint16_t>(index), static_cast<std::uint16_t>(index >> 16U), flags);
}

void Compiler::set_distance(std::size_t at, std::size_t target) {
  const auto distance = static_cast<std::int64_t>(target) - static_cast<std::int64_t>(at) - 1;
  if (distance >= (1 << 23) || distance < -(1 << 23)) too_much();
  instructions_[at].extra = static_cast<std::int8_t>(distance >> 16);
  instructions_[at].c = static_cast<std::uint16_t>(distance & 0xFFFF);
}

void Compiler::mark(Position at, bool resumes) {
  at_ = at;
  statement_temporaries_ = next_temporary_;
  marks_.push_back(
      {static_cast<std::uint32_t>(here()), at.line, at.column, static_cast<std::uint16_t>(next_temporary_), resumes});
}

Operand Compiler::temporaries(std::size_t count) {
  const std::size_t first = next_temporary_;
  if (count > kOperandIndices - first) too_much();
  next_temporary_ += count;
  last_temporary_ = std::max(last_temporary_, next_temporary_);
  if (next_temporary_ >= kOperandIndices) too_much();
  return operand(OperandKind::kRegister, first);
}

Operand Compiler::temporary() {
  return temporaries(1);
}

bool Compiler::is_temporary(Operand place) const {
  return kind_of(place) == OperandKind::kRegister && index_of(place) >= statement_temporaries_;
}

Operand Compiler::constant(const Value& value) {
  const std::size_t first = constants_.size() > kConstantsLookedAt ? constants_.size() - kConstantsLookedAt : 0;
  for (std::size_t i = first; i < constants_.size(); ++i) {
    if (i < kOperandIndices && same_constant(constants_[i], value)) return operand(OperandKind::kConstant, i);
  }
  const std::size_t index = constants_.size();
  constants_.push_back(value);
  if (index < kOperandIndices) return operand(OperandKind::kConstant, index);
  const Operand loaded = temporary();
  emit_index(Op::kLoadConstant, loaded, index);
  return loaded;
}

std::size_t Compiler::name_index(Symbol* symbol) {
  return index_in(code_->names, symbol);
}

std::size_t Compiler::builtin_index(const Builtin* builtin) {
  return index_in(code_->builtins, builtin);
}

std::size_t Compiler::method_index(const Code* code) {
  return index_in(code_->methods, code);
}

void Compiler::raise_at_run_time(std::int32_t number, Symbol* name) {
  emit_index(Op::kRaise, static_cast<Operand>(number), name == nullptr ? 0 : name_index(name) + 1);
}

void Compiler::program(const ast::Program& program) {
  explicit_names_ = program.option_explicit;
  unit_.main = std::make_unique<Code>();
  Code& main = *unit_.main;
  main.is_script_level = outer_ == nullptr;
  main.is_dynamic = outer_ != nullptr;
  main.owner = outer_ == nullptr ? nullptr : outer_->code->owner;
  if (outer_ != nullptr && outer_->code->explicit_names) explicit_names_ = true;
  main.explicit_names = explicit_names_;
  begin(main);
  declare_script_level(program.body);
  block(program.body);
  emit(Op::kReturn);
  finish();
  compile_pending();
}

void Compiler::expression(const ast::Expr& expression) {
  unit_.main = std::make_unique<Code>();
  Code& main = *unit_.main;
  main.is_script_level = outer_ == nullptr;
  main.is_dynamic = outer_ != nullptr;
  if (outer_ != nullptr) {
    main.owner = outer_->code->owner;
    explicit_names_ = main.explicit_names = outer_->code->explicit_names;
  }
  begin(main);
  main.result = new_variable(nullptr, true);
  mark(expression.at);
  compile_into(expression, Want::kAnything, main.result);
  emit(Op::kReturn);
  finish();
}

std::unique_ptr<Unit> compile_program(Machine& machine, std::string_view source, const Surroundings* outer) {
  return compile_unit(machine, source, outer, [&](Compiler& compiler) {
    Arena arena;
    compiler.program(*parse_program(source, arena, options_for(outer)));
  });
}

std::unique_ptr<Unit> compile_expression(Machine& machine, std::string_view source, const Surroundings* outer) {
  return compile_unit(machine, source, outer, [&](Compiler& compiler) {
    Arena arena;
    compiler.expression(*parse_expression(source, arena, options_for(outer)));
  });
}

}  // namespace pv::vbscript
