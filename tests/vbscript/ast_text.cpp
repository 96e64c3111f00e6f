#include "ast_text.h"

#include <initializer_list>
#include <iterator>
#include <sstream>
#include <string_view>

#include "vbscript/parser.h"

namespace pv::vbscript {
namespace {

std::string number_text(double real) {
  std::ostringstream out;
  out << real;
  return out.str();
}

std::string literal_text(const ast::Literal& literal) {
  switch (literal.literal) {
    case ast::LiteralKind::kEmpty:
      return "Empty";
    case ast::LiteralKind::kNull:
      return "Null";
    case ast::LiteralKind::kNothing:
      return "Nothing";
    case ast::LiteralKind::kTrue:
      return "True";
    case ast::LiteralKind::kFalse:
      return "False";
    case ast::LiteralKind::kInteger:
      return std::to_string(literal.number);
    case ast::LiteralKind::kLong:
      return std::to_string(literal.number) + "L";
    case ast::LiteralKind::kDouble:
      return number_text(literal.real) + "D";
    case ast::LiteralKind::kDate:
      return "#" + number_text(literal.real) + "#";
    case ast::LiteralKind::kText:
      return '"' + std::string(literal.text) + '"';
  }
  return "?";
}

std::string list_text(const ast::List<ast::Expr>& list) {
  std::string text;
  for (const ast::Expr* item = list.first; item != nullptr; item = item->next) {
    text += (item == list.first ? "" : " ") + text_of(item);
  }
  return text;
}

constexpr const char* kBinary[] = {"^", "*", "/",  "\\", "Mod", "+",   "-",  "&",   "=",   "<>",
                                   "<", ">", "<=", ">=", "Is",  "And", "Or", "Xor", "Eqv", "Imp"};
constexpr const char* kUnary[] = {"neg", "pos", "Not"};
constexpr const char* kVisibility[] = {"", "Public ", "Private "};
constexpr const char* kTests[] = {"", "While", "Until", "LoopWhile", "LoopUntil"};
constexpr const char* kExits[] = {"Do", "For", "Function", "Sub", "Property"};
constexpr const char* kProcedures[] = {"Sub", "Function", "Get", "Let", "Set"};

template <typename Names, typename Index>
std::string name_in(const Names& names, Index index) {
  return names[static_cast<std::size_t>(index)];
}

std::string body_text(const ast::Block& block) {
  return "[" + text_of(block) + "]";
}

std::string statement_text(const ast::Dim& dim) {
  std::string text = name_in(kVisibility, dim.visibility) + "Dim";
  for (const ast::Variable* item = dim.variables.first; item != nullptr; item = item->next) {
    text += " " + std::string(item->name);
    if (item->is_array) text += "(" + list_text(item->bounds) + ")";
  }
  return text;
}

std::string statement_text(const ast::ReDim& redim) {
  std::string text = redim.preserve ? "ReDimPreserve" : "ReDim";
  for (const ast::ReDimTarget* item = redim.targets.first; item != nullptr; item = item->next) {
    text += " " + text_of(item->target) + "(" + list_text(item->bounds) + ")";
  }
  return text;
}

std::string statement_text(const ast::Const& constants) {
  std::string text = name_in(kVisibility, constants.visibility) + "Const";
  for (const ast::ConstItem* item = constants.items.first; item != nullptr; item = item->next) {
    text += " " + std::string(item->name) + "=" + text_of(item->value);
  }
  return text;
}

std::string statement_text(const ast::If& statement) {
  std::string text = "If";
  for (const ast::IfBranch* branch = statement.branches.first; branch != nullptr; branch = branch->next) {
    text += " " + (branch->condition == nullptr ? "Else" : text_of(branch->condition)) + body_text(branch->body);
  }
  return text;
}

std::string statement_text(const ast::Select& select) {
  std::string text = "Select " + text_of(select.subject);
  for (const ast::CaseBranch* branch = select.cases.first; branch != nullptr; branch = branch->next) {
    text += " " + (branch->values.empty() ? "Else" : list_text(branch->values)) + body_text(branch->body);
  }
  return text;
}

std::string statement_text(const ast::For& loop) {
  return "For " + text_of(loop.variable) + " " + text_of(loop.from) + " " + text_of(loop.to) +
         (loop.step == nullptr ? "" : " " + text_of(loop.step)) + body_text(loop.body);
}

std::string statement_text(const ast::Do& loop) {
  std::string text = (loop.is_while_wend ? "Wend" : "Do") + name_in(kTests, loop.test);
  if (loop.condition != nullptr) text += " " + text_of(loop.condition);
  return text + body_text(loop.body);
}

std::string statement_text(const ast::Procedure& procedure) {
  std::string text = name_in(kVisibility, procedure.visibility) + (procedure.is_default ? "Default " : "") +
                     name_in(kProcedures, procedure.what) + " " + std::string(procedure.name) + "(";
  for (const ast::Parameter* item = procedure.parameters.first; item != nullptr; item = item->next) {
    text += item == procedure.parameters.first ? "" : " ";
    text += (item->by_value ? "ByVal " : "") + std::string(item->name) + (item->is_array ? "()" : "");
  }
  return text + ")" + body_text(procedure.body);
}

std::string statement_text(const ast::Call& call) {
  const std::string arguments = list_text(call.arguments);
  return "Call " + text_of(call.callee) + (arguments.empty() ? "" : " " + arguments);
}

std::string statement_text(const ast::Stmt& statement) {
  switch (statement.kind) {
    case ast::StmtKind::kDim:
      return statement_text(static_cast<const ast::Dim&>(statement));
    case ast::StmtKind::kReDim:
      return statement_text(static_cast<const ast::ReDim&>(statement));
    case ast::StmtKind::kConst:
      return statement_text(static_cast<const ast::Const&>(statement));
    case ast::StmtKind::kCall:
      return statement_text(static_cast<const ast::Call&>(statement));
    case ast::StmtKind::kIf:
      return statement_text(static_cast<const ast::If&>(statement));
    case ast::StmtKind::kSelect:
      return statement_text(static_cast<const ast::Select&>(statement));
    case ast::StmtKind::kFor:
      return statement_text(static_cast<const ast::For&>(statement));
    case ast::StmtKind::kDo:
      return statement_text(static_cast<const ast::Do&>(statement));
    case ast::StmtKind::kProcedure:
      return statement_text(static_cast<const ast::Procedure&>(statement));
    case ast::StmtKind::kExit:
      return "Exit" + name_in(kExits, static_cast<const ast::Exit&>(statement).what);
    case ast::StmtKind::kErase:
      return "Erase " + text_of(static_cast<const ast::Erase&>(statement).target);
    case ast::StmtKind::kOnError:
      return static_cast<const ast::OnError&>(statement).resume_next ? "ResumeNext" : "GoTo0";
    case ast::StmtKind::kAssign: {
      const auto& assign = static_cast<const ast::Assign&>(statement);
      return (assign.set ? "Set " : "Let ") + text_of(assign.target) + " " + text_of(assign.value);
    }
    case ast::StmtKind::kForEach: {
      const auto& loop = static_cast<const ast::ForEach&>(statement);
      return "ForEach " + text_of(loop.variable) + " " + text_of(loop.collection) + body_text(loop.body);
    }
    case ast::StmtKind::kWith: {
      const auto& with = static_cast<const ast::With&>(statement);
      return "With " + text_of(with.subject) + body_text(with.body);
    }
    case ast::StmtKind::kClass: {
      const auto& definition = static_cast<const ast::Class&>(statement);
      return "Class " + std::string(definition.name) + body_text(definition.members);
    }
  }
  return "?";
}

}  // namespace

std::string text_of(const ast::Expr* expression) {
  switch (expression->kind) {
    case ast::ExprKind::kLiteral:
      return literal_text(*static_cast<const ast::Literal*>(expression));
    case ast::ExprKind::kName:
      return std::string(static_cast<const ast::Name*>(expression)->name);
    case ast::ExprKind::kMe:
      return "Me";
    case ast::ExprKind::kWithSubject:
      return "";
    case ast::ExprKind::kOmitted:
      return "_";
    case ast::ExprKind::kNew:
      return "New:" + std::string(static_cast<const ast::New*>(expression)->class_name);
    case ast::ExprKind::kParenthesised:
      return "{" + text_of(static_cast<const ast::Parenthesised*>(expression)->operand) + "}";
    case ast::ExprKind::kMember: {
      const auto* const member = static_cast<const ast::Member*>(expression);
      return text_of(member->object) + "." + std::string(member->name);
    }
    case ast::ExprKind::kIndex: {
      const auto* const index = static_cast<const ast::Index*>(expression);
      return text_of(index->callee) + "[" + list_text(index->arguments) + "]";
    }
    case ast::ExprKind::kUnary: {
      const auto* const unary = static_cast<const ast::Unary*>(expression);
      return "(" + name_in(kUnary, unary->op) + " " + text_of(unary->operand) + ")";
    }
    case ast::ExprKind::kBinary: {
      const auto* const binary = static_cast<const ast::Binary*>(expression);
      return "(" + name_in(kBinary, binary->op) + " " + text_of(binary->left) + " " + text_of(binary->right) + ")";
    }
  }
  return "?";
}

std::string text_of(const ast::Block& block) {
  std::string text;
  for (const ast::Stmt* statement = block.first; statement != nullptr; statement = statement->next) {
    text += (statement == block.first ? "" : "; ") + statement_text(*statement);
  }
  return text;
}

std::string error_text(const CompileError& error) {
  return "error " + std::to_string(error.number) + " at " + std::to_string(error.at.line) + ":" +
         std::to_string(error.at.column);
}

std::string parse(std::string_view source) {
  Arena arena;
  try {
    return text_of(parse_program(source, arena)->body);
  } catch (const CompileError& error) {
    return error_text(error);
  }
}

std::string parse_value(std::string_view source) {
  Arena arena;
  try {
    return text_of(parse_expression(source, arena));
  } catch (const CompileError& error) {
    return error_text(error);
  }
}

}  // namespace pv::vbscript
