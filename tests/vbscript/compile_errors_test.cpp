// What is no program: number and place of the error, and the limits of a program text.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "ast_text.h"
#include "vbscript/limits.h"
#include "vbscript/parser.h"

namespace pv::vbscript {
namespace {

std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// Long chains are no nesting; nesting ends in "Out of memory" before the thread's stack does.
TEST(CompileErrors, LimitsNestingButNotLength) {
  struct Case {
    const char* what;
    std::string before;
    std::string after;
    bool limited;
  };
  const Case cases[] = {
      {"operators in a row", "x = 1", " + 1", false},
      {"operators of rising precedence in a row", "x = 1", " + 2 * 3", false},
      {"members", "x = a", ".b", false},
      {"indexes", "x = a", "(1)", false},
      {"arguments", "f 1", ", 2", false},
      {"lines", "", "x = 1\n", false},
      {"parentheses", "x = ", "(", true},
      {"argument lists", "x = ", "f(", true},
      {"Not", "x = ", "Not ", true},
      {"signs", "x = ", "-", true},
      {"signs of constants", "Const c = ", "-", true},
      {"Not behind an operator", "x = 1", " And Not 1", false},
      {"block Ifs", "", "If a Then\n", true},
      {"Ifs on one line", "", "If a Then ", true},
      {"loops", "", "Do\n", true},
      {"With", "", "With a\n", true},
      {"selections", "", "Select Case a\nCase 1\n", true},
      {"powers of negated powers", "x = 1", " ^ -1", true},
  };
  for (const Case& c : cases) {
    const std::string source = c.before + repeated(c.after, 50'000);
    Arena arena;
    std::int32_t error = 0;
    try {
      parse_program(source, arena);
    } catch (const CompileError& thrown) {
      error = thrown.number;
    }
    EXPECT_EQ(error, c.limited ? 1001 : 0) << c.what;
  }
}

TEST(CompileErrors, NestsUpToTheLimit) {
  const auto nested = [](std::size_t depth) { return parse_value(repeated("(", depth) + "1" + repeated(")", depth)); };
  EXPECT_EQ(nested(kMaxNestedSource), repeated("{", kMaxNestedSource) + "1" + repeated("}", kMaxNestedSource));
  EXPECT_EQ(nested(kMaxNestedSource + 1), "error 1001 at 1:201");
}

TEST(CompileErrors, LimitsTheProgram) {
  EXPECT_EQ(parse(std::string(kMaxSourceBytes, ' ')), "");
  EXPECT_EQ(parse(std::string(kMaxSourceBytes + 1, ' ')), "error 1001 at 1:1");
  const std::string name(kMaxIdentifierBytes, 'a');
  EXPECT_EQ(parse(name), "Call " + name);
  EXPECT_EQ(parse("x = " + name + "a"), "error 1030 at 1:5");
}

struct ErrorCase {
  const char* what;
  std::string_view source;
  std::int32_t number;
  std::uint32_t line;
  std::uint32_t column;
};

constexpr ErrorCase kErrors[] = {
    {"a character of no token", "x = 1 @", 1032, 1, 7},
    {"NUL", std::string_view("x = \0", 5), 1032, 1, 5},
    {"a letter above 127 in a name", "x\xE4 = 1", 1032, 1, 2},
    {"_ before anything but the line's end", "x = 1 _ + 2", 1032, 1, 7},
    {"a name that begins with _", "_x = 1", 1032, 1, 1},
    {"a text without its end", "x = \"abc", 1033, 1, 9},
    {"a text that ends in the next line", "x = \"abc\n\"", 1033, 1, 9},
    {"a bracket without its end", "x = [abc", 1007, 1, 9},
    {"a number above every double", "x = 1e309", 1031, 1, 5},
    {"a hexadecimal number of 33 bits", "x = &H100000000", 1031, 1, 5},
    {"no date", "x = #13/45/2004#", 1002, 1, 5},
    {"a date without its end", "x = #1/1/2004", 1002, 1, 5},
    {"no value", "x =", 1023, 1, 4},
    {"no condition", "If Then", 1023, 1, 4},
    {"nothing behind an operator", "x = 1 +", 1002, 1, 8},
    {"two operators", "x = 1 * / 2", 1002, 1, 9},
    {"a value as a statement", "5*4", 1024, 1, 1},
    {"two values", "x = 1 2", 1025, 1, 7},
    {"a type", "Dim x As Integer", 1025, 1, 7},
    {"a value with Dim", "Dim x = 1", 1025, 1, 7},
    {"a reserved word as a name", "Dim a, Loop", 1010, 1, 8},
    {"nothing behind the point", "x = a.", 1010, 1, 7},
    {"New without a class", "Set x = New", 1010, 1, 12},
    {"Set without =", "Set x", 1011, 1, 6},
    {"Const without =", "Const x", 1011, 1, 8},
    {"For without =", "For i To 3", 1011, 1, 7},
    {"an argument list without its end", "x = f(1", 1006, 1, 8},
    {"parentheses without their end", "x = (1 + 2", 1006, 1, 11},
    {"ReDim without bounds", "ReDim a", 1005, 1, 8},
    {"bounds that are no number", "Dim a(n)", 1026, 1, 7},
    {"a negative bound", "Dim a(-1)", 1026, 1, 7},
    {"an expression as a constant", "Const a = 1 + 2", 1025, 1, 13},
    {"a name as a constant", "Const a = vbCrLf", 1045, 1, 11},
    {"Then is missing", "If a\nb", 1017, 1, 5},
    {"To is missing", "For i = 1 : Next", 1013, 1, 11},
    {"In is missing", "For Each x a", 1046, 1, 12},
    {"Case is missing", "Select x", 1021, 1, 8},
    {"a statement before the first Case", "Select Case x\na\nEnd Select", 1021, 2, 1},
    {"another Case behind Case Else", "Select Case x\nCase Else\nCase 1\nEnd Select", 1014, 3, 1},
    {"a range as a case", "Select Case x\nCase 1 To 5\nEnd Select", 1025, 2, 8},
    {"End If is missing", "If a Then\nb", 1014, 2, 2},
    {"End Select is missing", "Select Case a\nCase 1\n", 1014, 3, 1},
    {"End Sub is missing", "Sub a\nb\n", 1014, 3, 1},
    {"End With is missing", "With a\n", 1014, 2, 1},
    {"End Class is missing", "Class C", 1014, 1, 8},
    {"If closed as something else", "If a Then\nb\nEnd Select", 1012, 3, 5},
    {"a Sub closed as a Function", "Sub a\nEnd Function", 1016, 2, 5},
    {"a Function closed as a Sub", "Function a\nEnd Sub", 1015, 2, 5},
    {"a Property closed as a Sub", "Class C\nProperty Get a\nEnd Sub", 1050, 3, 5},
    {"a Class closed as a Sub", "Class C\nEnd Sub", 1047, 2, 5},
    {"Select closed as If", "Select Case a\nEnd If", 1022, 2, 5},
    {"With closed as If", "With a\nEnd If", 1029, 2, 5},
    {"End If is missing in a Sub", "Sub s\nIf a Then\nb\nEnd Sub", 1012, 4, 5},
    {"End If is missing in a Do loop", "Do\nIf a Then\nb\nLoop", 1038, 4, 1},
    {"End If is missing in a For loop", "For i = 1 To 2\nIf a Then\nNext", 1055, 3, 1},
    {"Next is missing", "For i = 1 To 2\n", 1020, 2, 1},
    {"Next is missing in a Sub", "Sub s\nFor i = 1 To 2\nEnd Sub", 1020, 3, 1},
    {"Loop is missing", "Do\n", 1019, 2, 1},
    {"Wend is missing", "While a\n", 1018, 2, 1},
    {"Loop alone", "Loop", 1038, 1, 1},
    {"Next alone", "a\nNext", 1055, 2, 1},
    {"Wend alone", "Wend", 1024, 1, 1},
    {"End If alone", "x = 1\nEnd If", 1024, 2, 1},
    {"Else alone", "Else", 1024, 1, 1},
    {"Next with its variable", "For i = 1 To 2\nNext i", 1025, 2, 6},
    {"Do with a statement", "Do x", 1028, 1, 4},
    {"Loop with a statement", "Do\nLoop x", 1028, 2, 6},
    {"two conditions of one loop", "Do While a\nLoop While b", 1025, 2, 6},
    {"Else behind a statement", "If a Then\nb : Else\nc\nEnd If", 1042, 2, 5},
    {"a second Else", "If a Then\nElse\nElse\nEnd If", 1014, 3, 1},
    {"End If without its own line or colon", "If a Then\nb End If", 1023, 2, 3},
    {"Me outside a class", "x = Me", 1037, 1, 5},
    {"Me as a target", "Class C\nSub s\nSet Me = x\nEnd Sub\nEnd Class", 1037, 3, 1},
    {"Exit Do outside a loop", "Exit Do", 1039, 1, 6},
    {"Exit Do in While", "While a\nExit Do\nWend", 1039, 2, 6},
    {"Exit For in Do", "Do\nExit For\nLoop", 1039, 2, 6},
    {"Exit Sub in a Function", "Function f\nExit Sub\nEnd Function", 1039, 2, 6},
    {"Exit For in a procedure within a loop", "For i = 1 To 2\nSub s\nExit For\nEnd Sub\nNext", 1039, 3, 6},
    {"Exit alone", "Exit", 1039, 1, 5},
    {"the variable of the loop around", "For i = 1 To 2\nFor I = 1 To 2", 1040, 2, 5},
    {"an element as a loop variable", "For a(1) = 1 To 2", 1040, 1, 5},
    {"a member as a loop variable", "For Each a.b In c", 1040, 1, 10},
    {"a variable declared twice", "Dim abc\nDim ABC", 1041, 2, 5},
    {"a variable named like a procedure", "Sub a\nEnd Sub\nDim a", 1041, 3, 5},
    {"a procedure named like a constant", "Const a = 1\nSub a\nEnd Sub", 1041, 2, 5},
    {"a variable named like a parameter", "Sub s(a)\nDim a\nEnd Sub", 1041, 2, 5},
    {"two parameters of one name", "Sub s(a, a)\nEnd Sub", 1041, 1, 10},
    {"a variable named like its function", "Function f\nDim f\nEnd Function", 1041, 2, 5},
    {"two classes of one name", "Class C\nEnd Class\nClass C\nEnd Class", 1041, 3, 7},
    {"two members of one name", "Class C\nDim a\nSub a\nEnd Sub\nEnd Class", 1041, 3, 5},
    {"Property Get twice", "Class C\nProperty Get a\nEnd Property\nProperty Get a\nEnd Property\nEnd Class", 1041, 4,
     14},
    {"several arguments in parentheses", "f(1, 2)", 1044, 1, 8},
    {"and more behind them", "f(1, 2), 3", 1044, 1, 8},
    {"an argument behind parentheses", "f(1) 2", 1025, 1, 6},
    {"Call without parentheses", "Call f 1", 1025, 1, 8},
    {"Call of nothing", "Call", 1010, 1, 5},
    {"On Error GoTo a line", "On Error GoTo 1", 1002, 1, 15},
    {"On Error Resume alone", "On Error Resume", 1020, 1, 16},
    {"Option Explicit too late", "x = 1\nOption Explicit", 1024, 2, 1},
    {"Option Base", "Option Base 1", 1002, 1, 8},
    {"a procedure in a procedure", "Sub a\nSub b\nEnd Sub\nEnd Sub", 1002, 2, 1},
    {"a class in a procedure", "Sub a\nClass b", 1002, 2, 1},
    {"Public in a procedure", "Sub a\nPublic b", 1002, 2, 1},
    {"a statement in a class", "Class C\nx = 1", 1002, 2, 1},
    {"a constant in a class", "Class C\nConst x = 1", 1002, 2, 1},
    {"a property outside a class", "Property Get a", 1048, 1, 1},
    {"a public property outside a class", "Public Property Get a", 1048, 1, 8},
    {"a property of no use", "Class C\nProperty a", 1049, 2, 10},
    {"Let without an argument", "Class C\nProperty Let a()", 1054, 2, 14},
    {"Get and Let that disagree", "Class C\nProperty Get a\nEnd Property\nProperty Let a(x, y)", 1051, 4, 14},
    {"Class_Initialize with an argument", "Class C\nSub Class_Initialize(a)", 1053, 2, 5},
    {"Default without Public", "Class C\nDefault Sub a", 1057, 2, 1},
    {"Private Default", "Class C\nPrivate Default Sub a", 1057, 2, 9},
    {"Default of a variable", "Class C\nPublic Default a", 1056, 2, 16},
    {"Default of a Let", "Class C\nPublic Default Property Let a(b)", 1058, 2, 25},
    {"two defaults", "Class C\nPublic Default Sub a\nEnd Sub\nPublic Default Sub b", 1052, 4, 8},
    {"positions behind a continued line", "x = 1 + _\n  2 3", 1025, 2, 5},
    {"positions behind CR LF", "a\r\nb\r\n  )", 1024, 3, 3},
    {"positions behind a tab", "\tx = )", 1023, 1, 6},
};

TEST(CompileErrors, ReportsErrorsWithTheirPlace) {
  for (const ErrorCase& c : kErrors) {
    const std::string expected = error_text({c.number, {c.line, c.column}});
    EXPECT_EQ(parse(c.source), expected) << c.what;
  }
}

TEST(Parser, EvalTakesOneExpression) {
  EXPECT_EQ(parse_value(" 1 + 1 \n"), "(+ 1 1)");
  EXPECT_EQ(parse_value(""), "error 1023 at 1:1");
  EXPECT_EQ(parse_value("1\n2"), "error 1025 at 2:1");
  Arena arena;
  EXPECT_EQ(text_of(parse_expression("Me.x", arena, {.inside_class = true})), "Me.x");
}

TEST(ScriptError, NumbersAndTexts) {
  EXPECT_EQ(compile_error_text(1028), "Expected 'While', 'Until' or end of statement");
  EXPECT_EQ(compile_error_text(1058), "'Default' specification can only be on Property Get");
  EXPECT_EQ(runtime_error_text(13), "Type mismatch");
  EXPECT_EQ(runtime_error_text(12), "Unknown runtime error");
  ScriptError error;
  error.number = 1002;
  EXPECT_EQ(static_cast<std::uint32_t>(error.hresult()), 0x800A03EAU);
  error.number = static_cast<std::int32_t>(0x80004004);
  EXPECT_EQ(error.hresult(), error.number);
  try {
    raise(ErrorCode::kTypeMismatch, "f");
  } catch (const RuntimeError& raised) {
    EXPECT_EQ(raised.number, 13);
    EXPECT_EQ(raised.description, "Type mismatch: 'f'");
  }
}

}  // namespace
}  // namespace pv::vbscript
