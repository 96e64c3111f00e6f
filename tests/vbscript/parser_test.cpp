#include "vbscript/parser.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "ast_text.h"

namespace pv::vbscript {
namespace {

struct TreeCase {
  const char* what;
  std::string_view source;
  const char* tree;
};

constexpr TreeCase kLiterals[] = {
    {"the largest Integer", "32767", "32767"},
    {"one above is a Long", "32768", "32768L"},
    {"the largest Long", "2147483647", "2147483647L"},
    {"one above is a Double", "2147483648", "2.14748e+09D"},
    {"leading zeros say nothing of the type", "0000000000007", "7"},
    {"a fraction makes a Double", "1.0", "1D"},
    {"a point alone does too", "1.", "1D"},
    {"no digit before the point", ".5", "0.5D"},
    {"an exponent makes a Double", "1e3", "1000D"},
    {"an exponent with a sign", "25E-1", "2.5D"},
    {"what is too small is 0", "1e-400", "0D"},
    {"tiny by its zeros", "0.0000000000000000000000000000000001e-300", "0D"},
    {"a sign is an operator, so the type is that of the number", "-32768", "(neg 32768L)"},
    {"16 bits hold a sign", "&HFFFF", "-1"},
    {"the first negative one", "&h8000", "-32768"},
    {"17 bits are a Long", "&H10000", "65536L"},
    {"an & behind makes a Long", "&HFFFF&", "65535L"},
    {"32 bits hold a sign", "&HFFFFFFFF", "-1L"},
    {"leading zeros of a hexadecimal number", "&H00000000FF", "255"},
    {"octal", "&O17", "15"},
    {"16 octal bits hold a sign", "&o177777", "-1"},
    {"an octal Long", "&O17&", "15L"},
    {"doubled quotes", "\"say \"\"hi\"\"\"", "\"say \"hi\"\""},
    {"nothing but quotes", "\"\"\"\"", "\"\"\""},
    {"an apostrophe in a text", "\"it's\"", "\"it's\""},
    {"bytes above 127 in a text", "\"\xE4\xFF\"", "\"\xE4\xFF\""},
    {"a date", "#1/1/2004#", "#37987#"},
    {"a date with a time", "#1/1/1900 12:00:00#", "#2.5#"},
    {"words of any case", "TRUE And fAlSe", "(And True False)"},
    {"the other words", "f(Empty, NULL, nothing)", "f[Empty Null Nothing]"},
};

TEST(Parser, ReadsLiterals) {
  for (const TreeCase& c : kLiterals) EXPECT_EQ(parse_value(c.source), c.tree) << c.what;
}

constexpr TreeCase kExpressions[] = {
    {"from the weakest operator", "a Imp b Eqv c Xor d Or e And f", "(Imp a (Eqv b (Xor c (Or d (And e f)))))"},
    {"and back", "f And e Or d Xor c Eqv b Imp a", "(Imp (Eqv (Xor (Or (And f e) d) c) b) a)"},
    {"Not is weaker than comparison", "Not a = b And c", "(And (Not (= a b)) c)"},
    {"& is stronger than comparison", "a & b = c & d", "(= (& a b) (& c d))"},
    {"+ is stronger than &", "a & b + c & d", "(& (& a (+ b c)) d)"},
    {"Mod is stronger than +", "a + b Mod c - d", "(- (+ a (Mod b c)) d)"},
    {"\\ is stronger than Mod", "a Mod b \\ c Mod d", "(Mod (Mod a (\\ b c)) d)"},
    {"* is stronger than \\", "a \\ b * c \\ d", "(\\ (\\ a (* b c)) d)"},
    {"* and / go from left to right", "a / b * c / d", "(/ (* (/ a b) c) d)"},
    {"a sign is stronger than *", "-a * b", "(* (neg a) b)"},
    {"^ is stronger than a sign on its left", "-a ^ b", "(neg (^ a b))"},
    {"a sign on the right of ^", "2 ^ -3", "(^ 2 (neg 3))"},
    {"^ goes from left to right", "a ^ b ^ c", "(^ (^ a b) c)"},
    {"comparisons are one level, from left to right", "a = b < c Is d <> e", "(<> (Is (< (= a b) c) d) e)"},
    {"Not as a right operand", "a = Not b = c", "(= a (Not (= b c)))"},
    {"signs one behind another", "a - - + b", "(- a (neg (pos b)))"},
    {"operators spelt the other way round", "a => b =< c >< d", "(<> (<= (>= a b) c) d)"},
    {"operators in two pieces", "a < > b > = c", "(>= (<> a b) c)"},
    {"parentheses are kept", "(a + b) * c", "(* {(+ a b)} c)"},
    {"members and indexes", "a.b(1)(2, x).c", "a.b[1][2 x].c"},
    {"omitted arguments", "f(, 1, , 2,)", "f[_ 1 _ 2 _]"},
    {"no arguments", "f()", "f[]"},
    {"a member of what stands in parentheses", "(New C).x", "{New:C}.x"},
    {"New", "New RegExp", "New:RegExp"},
    {"a reserved word as a member", "a.Class.Next.End(1)", "a.Class.Next.End[1]"},
    {"Rem as a member", "a.Rem + 1", "(+ a.Rem 1)"},
    {"a name in brackets", "[my name] + [If]", "(+ my name If)"},
    {"words that mean something elsewhere are names", "Property + Default + Step + Error + Explicit + Erase",
     "(+ (+ (+ (+ (+ Property Default) Step) Error) Explicit) Erase)"},
    {"a line goes on behind _", "a + _\r\n  _  \n b", "(+ a b)"},
    {"a comment ends it", "a ' + b", "a"},
    {"& before a letter of a name", "a &Hx", "(& a Hx)"},
    {"& before a digit", "a &1", "(& a 1)"},
    {"an underscore within a name", "a_b", "a_b"},
};

TEST(Parser, ReadsExpressions) {
  for (const TreeCase& c : kExpressions) EXPECT_EQ(parse_value(c.source), c.tree) << c.what;
}

constexpr TreeCase kCalls[] = {
    {"no arguments", "f", "Call f"},
    {"arguments", "f 1, , x", "Call f 1 _ x"},
    {"a trailing comma", "f 1,", "Call f 1 _"},
    {"the first one left out", "f , 1", "Call f _ 1"},
    {"empty parentheses", "f()", "Call f"},
    {"one argument in parentheses is passed by value", "f (x)", "Call f {x}"},
    {"with or without a blank", "f(x)", "Call f {x}"},
    {"parentheses around the first argument only", "f (1), 2", "Call f {1} 2"},
    {"parentheses that begin an expression", "f (1) + 2, 3", "Call f (+ {1} 2) 3"},
    {"an expression of several levels behind them", "f (1) * 2 + 3 & x", "Call f (& (+ (* {1} 2) 3) x)"},
    {"a sign is part of an argument", "f -1", "Call f (neg 1)"},
    {"a word operator begins an argument", "f Not x", "Call f (Not x)"},
    {"a member behind an index", "a.b(1).c 5", "Call a.b[1].c 5"},
    {"the last parentheses of several", "a(1)(2)", "Call a[1] {2}"},
    {"Call with arguments", "Call f(x, 1)", "Call f x 1"},
    {"Call without", "Call a.b", "Call a.b"},
    {"Call with empty parentheses", "Call f()", "Call f"},
    {"Call with an index before", "Call a(1).f(2)", "Call a[1].f 2"},
    {"Execute is a call", "Execute \"x = 1\"", "Call Execute \"x = 1\""},
    {"Randomize is a call", "Randomize", "Call Randomize"},
    {"a method of a reserved name", "r.Execute x", "Call r.Execute x"},
    {"assignment", "x = 1", "Let x 1"},
    {"the first = assigns, the second compares", "x = y = 1", "Let x (= y 1)"},
    {"Let", "Let x.y = 1", "Let x.y 1"},
    {"Set", "Set x(1).y = New C", "Set x[1].y New:C"},
    {"to an element", "a(1, 2) = 3", "Let a[1 2] 3"},
    {"to an element of what a call gives", "f()(1) = 2", "Let f[][1] 2"},
    {"a member of With", "With a : .b = 1 : .c 2 : .d : x = .e : End With",
     "With a[Let .b 1; Call .c 2; Call .d; Let x .e]"},
    {"a member of With as an argument", "With a\nf .b, .c\na.f .b\nEnd With", "With a[Call f .b .c; Call a.f .b]"},
    {"a blank before . outside With", "a .b 1", "Call a.b 1"},
    {"contextual words as names", "Error = 1 : Property = 2 : Step 3 : Default.x = 4 : Erase = 5",
     "Let Error 1; Let Property 2; Call Step 3; Let Default.x 4; Let Erase 5"},
    {"Erase", "Erase a : Erase a.b", "Erase a; Erase a.b"},
    {"On Error", "On Error Resume Next\nOn Error GoTo 0", "ResumeNext; GoTo0"},
    {"Stop is nothing", "Stop : x", "Call x"},
};

TEST(Parser, ReadsCallsAndAssignments) {
  for (const TreeCase& c : kCalls) EXPECT_EQ(parse(c.source), c.tree) << c.what;
}

constexpr TreeCase kBlocks[] = {
    {"block If", "If a Then\nb\nElseIf c Then\nd\nElse\ne\nEnd If", "If a[Call b] c[Call d] Else[Call e]"},
    {"a comment behind Then", "If a Then ' why\nb\nEnd If", "If a[Call b]"},
    {"a statement behind ElseIf Then and Else", "If a Then\nElseIf b Then c\nElse d\nEnd If",
     "If a[] b[Call c] Else[Call d]"},
    {"End If behind a colon", "If a Then\nb : End If", "If a[Call b]"},
    {"one line", "If a Then b", "If a[Call b]"},
    {"one line, then another", "If a Then b\nc", "If a[Call b]; Call c"},
    {"several statements", "If a Then b : c = 1 Else d : e", "If a[Call b; Let c 1] Else[Call d; Call e]"},
    {"End If on the line", "If a Then b Else c End If", "If a[Call b] Else[Call c]"},
    {"End If behind a colon on the line", "If a Then b : End If : c", "If a[Call b]; Call c"},
    {"ElseIf on the line", "If a Then b ElseIf c Then d Else e", "If a[Call b] c[Call d] Else[Call e]"},
    {"Else belongs to the inner If", "If a Then If b Then c Else d", "If a[If b[Call c] Else[Call d]]"},
    {"both have an Else", "If a Then If b Then c Else d Else e", "If a[If b[Call c] Else[Call d]] Else[Call e]"},
    {"nothing before Else", "If a Then Else b", "If a[] Else[Call b]"},
    {"a colon behind Then", "If a Then : b", "If a[Call b]"},
    {"a loop on the line", "If a Then For i = 1 To 2 : f i : Next", "If a[For i 1 2[Call f i]]"},
    {"in a loop on one line", "For i = 1 To 2 : If a Then f i : Next", "For i 1 2[If a[Call f i]]"},
    {"Exit behind Then", "Do : If a Then Exit Do\nLoop", "Do[If a[ExitDo]]"},
    {"Select", "Select Case x\n' none\nCase 1, \"a\"\nb\nCase f(2)\nCase Else\nc\nEnd Select",
     "Select x 1 \"a\"[Call b] f[2][] Else[Call c]"},
    {"Select with colons", "Select Case x : Case 1 : a : Case Else b : End Select", "Select x 1[Call a] Else[Call b]"},
    {"a statement behind Case without a colon", "Select Case x\nCase \"red\" y = 1\nCase 2 f x\nEnd Select",
     "Select x \"red\"[Let y 1] 2[Call f x]"},
    {"Select without a case", "Select Case x\nEnd Select", "Select x"},
    {"For", "For i = a To b Step -1\nExit For\nNext", "For i a b (neg 1)[ExitFor]"},
    {"For Each", "For Each x In a.b\nf x\nNext", "ForEach x a.b[Call f x]"},
    {"nested loops", "For i = 1 To 2\nFor j = 1 To 2\nNext\nNext", "For i 1 2[For j 1 2[]]"},
    {"one loop after another of the same variable", "For i = 1 To 2\nNext\nFor i = 1 To 2\nNext",
     "For i 1 2[]; For i 1 2[]"},
    {"Do While", "Do While a\nLoop", "DoWhile a[]"},
    {"Do Until", "Do Until a : b : Loop", "DoUntil a[Call b]"},
    {"Loop While", "Do\nLoop While a", "DoLoopWhile a[]"},
    {"Loop Until", "Do : Loop Until a = 1", "DoLoopUntil (= a 1)[]"},
    {"Do for ever", "Do\nExit Do\nLoop", "Do[ExitDo]"},
    {"While", "While a\nb\nWend", "WendWhile a[Call b]"},
    {"CR alone ends a line", "a\rb", "Call a; Call b"},
    {"comments and blank lines", "\n' one\n  Rem two\na ' three\nb : Rem four\nRem", "Call a; Call b"},
    {"Rem begins words", "Remark = 1", "Let Remark 1"},
    {"nothing", "", ""},
    {"blanks and nothing else", " \t:\n: ", ""},
};

TEST(Parser, ReadsBlocks) {
  for (const TreeCase& c : kBlocks) EXPECT_EQ(parse(c.source), c.tree) << c.what;
}

constexpr TreeCase kDeclarations[] = {
    {"variables and arrays", "Dim a, b(), c(5), d(2, &H3)", "Dim a b() c(5) d(2 3)"},
    {"visibility", "Public a, b(1)\nPrivate c", "Public Dim a b(1); Private Dim c"},
    {"ReDim", "ReDim a(n + 1), b(1, 2)", "ReDim a((+ n 1)) b(1 2)"},
    {"ReDim Preserve of a member", "ReDim Preserve a.b(3)", "ReDimPreserve a.b(3)"},
    {"ReDim of an element's element", "ReDim a(1)(2)", "ReDim a[1](2)"},
    {"Const", "Const a = 1, b = \"x\"\nPrivate Const c = #1/1/1900#, d = True",
     "Const a=1 b=\"x\"; Private Const c=#2# d=True"},
    {"signs of a constant", "Const z = -+-10", "Const z=(neg (pos (neg 10)))"},
    {"Sub without parentheses", "Sub s\nx\nEnd Sub", "Sub s()[Call x]"},
    {"Sub on one line", "Sub s() : Exit Sub : End Sub", "Sub s()[ExitSub]"},
    {"parameters", "Function f(a, ByVal b, ByRef c, d())\nf = a\nExit Function\nEnd Function",
     "Function f(a ByVal b c d())[Let f a; ExitFunction]"},
    {"visibility of procedures", "Public Sub a\nEnd Sub\nPrivate Function b\nEnd Function",
     "Public Sub a()[]; Private Function b()[]"},
    {"procedures may follow one another", "Sub a\nEnd Sub\nSub A\nEnd Sub", "Sub a()[]; Sub A()[]"},
    {"a procedure within a block is the script's", "If x Then\nSub a\nEnd Sub\nb\nEnd If", "Sub a()[]; If x[Call b]"},
    {"members",
     "Class C\nDim a\nPublic b(2)\nPrivate d\nSub e\nMe.a = 1\nEnd Sub\nPrivate Function f(x)\nEnd Function\nEnd Class",
     "Class C[Dim a; Public Dim b(2); Private Dim d; Sub e()[Let Me.a 1]; Private Function f(x)[]]"},
    {"properties",
     "Class C\nPublic Default Property Get P(i)\nExit Property\nEnd Property\nProperty Let P(i, v)\nEnd Property\n"
     "Private Property Set P(i, v)\nEnd Property\nEnd Class",
     "Class C[Public Default Get P(i)[ExitProperty]; Let P(i v)[]; Private Set P(i v)[]]"},
    {"a default function", "Class C\nPublic Default Function F\nEnd Function\nEnd Class",
     "Class C[Public Default Function F()[]]"},
    {"events", "Class C\nPrivate Sub Class_Initialize()\nEnd Sub\nSub class_terminate\nEnd Sub\nEnd Class",
     "Class C[Private Sub Class_Initialize()[]; Sub class_terminate()[]]"},
    {"a class on one line", "Class C : Public a : End Class : x", "Class C[Public Dim a]; Call x"},
    {"the same name in different scopes", "Dim x\nSub s(x)\nEnd Sub\nSub t\nDim x\nEnd Sub",
     "Dim x; Sub s(x)[]; Sub t()[Dim x]"},
};

TEST(Parser, ReadsDeclarations) {
  for (const TreeCase& c : kDeclarations) EXPECT_EQ(parse(c.source), c.tree) << c.what;
}

TEST(Parser, OptionExplicitIsNoStatement) {
  Arena arena;
  const ast::Program* const program = parse_program("' first\nOption Explicit\nDim x", arena);
  EXPECT_TRUE(program->option_explicit);
  EXPECT_EQ(text_of(program->body), "Dim x");
}

}  // namespace
}  // namespace pv::vbscript
