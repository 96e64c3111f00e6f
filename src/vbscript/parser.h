// Program text to tree.
#pragma once

#include <string_view>

#include "vbscript/arena.h"
#include "vbscript/ast.h"

namespace pv::vbscript {

struct ParseOptions {
  bool inside_class = false;  // "Me" may be used: Execute and Eval in a method
};

// A whole program, as add_code and Execute take it. Throws CompileError (its position is always known). The tree refers
// to `source` and `arena`: both must outlive it.
const ast::Program* parse_program(std::string_view source, Arena& arena, ParseOptions options = {});

// One expression and nothing behind it, as Eval takes it.
const ast::Expr* parse_expression(std::string_view source, Arena& arena, ParseOptions options = {});

}  // namespace pv::vbscript
