// A program as the parser gives it to the compiler. Nodes lie in the program's Arena and are never freed one by one;
// names and texts are views of the source or of the arena.
//
// Nesting (parentheses, signs, Not, argument lists, right operands, blocks) is limited to kMaxNestedSource by the
// parser, so it may be walked recursively. Chains to the left are not limited, since "a & b & c …" goes on for hundreds
// of lines in real scripts: Binary::left, Member::object and Index::callee must be walked in a loop.
#pragma once

#include <cstdint>
#include <string_view>

#include "vbscript/script_error.h"

namespace pv::vbscript::ast {

// A list in the order of the source, linked through `next`.
template <typename Node>
struct List {
  Node* first = nullptr;
  Node* last = nullptr;
  std::uint32_t size = 0;

  void append(Node* node) {
    (last == nullptr ? first : last->next) = node;
    last = node;
    ++size;
  }
  bool empty() const { return first == nullptr; }
};

// ---- Expressions

enum class ExprKind : std::uint8_t {
  kLiteral,
  kName,
  kMember,
  kIndex,
  kUnary,
  kBinary,
  kParenthesised,
  kNew,
  kMe,
  kWithSubject,
  kOmitted,
};

struct Expr {
  ExprKind kind;
  Position at;
  Expr* next = nullptr;  // in an argument list
};

enum class LiteralKind : std::uint8_t {
  kEmpty,
  kNull,
  kNothing,
  kTrue,
  kFalse,
  kInteger,
  kLong,
  kDouble,
  kDate,
  kText
};
struct Literal : Expr {
  LiteralKind literal;
  std::int32_t number = 0;  // kInteger, kLong
  double real = 0;          // kDouble; kDate: days since 30 December 1899
  std::string_view text;    // kText, doubled quotes undone
};

struct Name : Expr {
  std::string_view name;  // as spelt, without the brackets of [name]
};

// object.member ; the object of ".member" inside With is a kWithSubject.
struct Member : Expr {
  Expr* object;
  std::string_view name;
};

// callee(arguments): an array element, a call, or a default property: only the compiler or the machine knows.
struct Index : Expr {
  Expr* callee;
  List<Expr> arguments;  // an omitted one is a kOmitted
};

enum class UnaryOp : std::uint8_t { kNegate, kPlus, kNot };
struct Unary : Expr {
  UnaryOp op;
  Expr* operand;
};

enum class BinaryOp : std::uint8_t {
  kPower,
  kMultiply,
  kDivide,
  kDivideWhole,
  kModulo,
  kAdd,
  kSubtract,
  kConcatenate,
  kEqual,
  kNotEqual,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  kIs,
  kAnd,
  kOr,
  kXor,
  kEqv,
  kImp,
};
struct Binary : Expr {
  BinaryOp op;
  Expr* left;
  Expr* right;
};

// (operand): its value, so that a variable in parentheses is passed ByVal.
struct Parenthesised : Expr {
  Expr* operand;
};

struct New : Expr {
  std::string_view class_name;
};

// ---- Statements

enum class StmtKind : std::uint8_t {
  kDim,
  kReDim,
  kConst,
  kAssign,
  kCall,
  kIf,
  kSelect,
  kFor,
  kForEach,
  kDo,
  kWith,
  kExit,
  kErase,
  kOnError,
  kProcedure,
  kClass,
};

struct Stmt {
  StmtKind kind;
  Position at;
  Stmt* next = nullptr;
};
using Block = List<Stmt>;

enum class Visibility : std::uint8_t { kDefault, kPublic, kPrivate };

// Dim, Public, Private: `bounds` of an array; is_array without bounds is a dynamic one.
struct Variable {
  std::string_view name;
  Position at;
  bool is_array = false;
  List<Expr> bounds;  // upper bounds, literals
  Variable* next = nullptr;
};
struct Dim : Stmt {
  Visibility visibility;
  List<Variable> variables;
};
struct ReDimTarget {
  Expr* target;       // kName, kMember or kIndex without its last argument list
  List<Expr> bounds;  // never empty
  ReDimTarget* next = nullptr;
};
struct ReDim : Stmt {
  bool preserve;
  List<ReDimTarget> targets;
};

struct ConstItem {
  std::string_view name;
  Position at;
  Expr* value;  // a literal, perhaps with signs in front
  ConstItem* next = nullptr;
};
struct Const : Stmt {
  Visibility visibility;
  List<ConstItem> items;
};

struct Assign : Stmt {
  bool set;
  Expr* target;  // kName, kMember or kIndex
  Expr* value;
};

// A call as a statement. `f (1)` has the callee f and the argument (1), a kParenthesised; `f(1)(2)` has the callee
// f(1). Execute, ExecuteGlobal and Randomize are calls as well: a script may have procedures of these names.
struct Call : Stmt {
  Expr* callee;
  List<Expr> arguments;
};

struct IfBranch {
  Expr* condition;  // nullptr: Else
  Position at;
  Block body;
  IfBranch* next = nullptr;
};
struct If : Stmt {
  List<IfBranch> branches;
};

struct CaseBranch {
  List<Expr> values;  // empty: Case Else
  Position at;
  Block body;
  CaseBranch* next = nullptr;
};
struct Select : Stmt {
  Expr* subject;
  List<CaseBranch> cases;
};

struct For : Stmt {
  Expr* variable;  // a kName
  Expr* from;
  Expr* to;
  Expr* step;  // nullptr: 1
  Block body;
  Position next_at;
};
struct ForEach : Stmt {
  Expr* variable;
  Expr* collection;
  Block body;
  Position next_at;
};

enum class DoTest : std::uint8_t { kNone, kWhileBefore, kUntilBefore, kWhileAfter, kUntilAfter };
struct Do : Stmt {  // While … Wend too
  DoTest test;
  Expr* condition;
  Block body;
  Position end_at;
  bool is_while_wend = false;  // no "Exit Do"
};

struct With : Stmt {
  Expr* subject;
  Block body;
};

enum class ExitKind : std::uint8_t { kDo, kFor, kFunction, kSub, kProperty };
struct Exit : Stmt {
  ExitKind what;
};

struct Erase : Stmt {
  Expr* target;
};

struct OnError : Stmt {
  bool resume_next;  // false: GoTo 0
};

enum class ProcedureKind : std::uint8_t { kSub, kFunction, kPropertyGet, kPropertyLet, kPropertySet };
struct Parameter {
  std::string_view name;
  Position at;
  bool by_value = false;
  bool is_array = false;
  Parameter* next = nullptr;
};
struct Procedure : Stmt {
  ProcedureKind what;
  Visibility visibility;
  bool is_default = false;
  std::string_view name;
  List<Parameter> parameters;
  Block body;
  Position end_at;
};

struct Class : Stmt {
  std::string_view name;
  Block members;  // kDim and kProcedure
  Position end_at;
};

// Procedures and classes stand in `body` itself, never in the blocks within it, wherever the source has them.
struct Program {
  Block body;
  bool option_explicit = false;
};

}  // namespace pv::vbscript::ast
