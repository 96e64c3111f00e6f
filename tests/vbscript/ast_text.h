// Programs as text, for tests: one line, the structure in brackets.
#pragma once

#include <string>
#include <string_view>

#include "vbscript/ast.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

// 1 1L 1.5D "text" #38000# name; a.b; a[1 2]; {x} in parentheses; (- 1 2); _ for an omitted argument.
std::string text_of(const ast::Expr* expression);

// Statements in their order, separated by "; ".
std::string text_of(const ast::Block& block);

// "error 1002 at 3:7".
std::string error_text(const CompileError& error);

// The text of a program, of one expression; error_text for what is none.
std::string parse(std::string_view source);
std::string parse_value(std::string_view source);

}  // namespace pv::vbscript
