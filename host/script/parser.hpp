// Parses script source into the syntax tree.
#pragma once

#include <ravelin/host/script/ast.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string_view>

namespace ravelin::script {

// How deep statements and expressions may nest (blocks inside blocks, parentheses, unary
// operators); deeper source is refused with "Out of stack space" instead of exhausting the
// stack. Trees are never taller than kMaxExpressionHeight, so a recursive evaluator is safe too.
inline constexpr int kMaxNesting = 1000;
inline constexpr uint32_t kMaxExpressionHeight = 2000;

// Parses a whole script. Raises SyntaxError (with line and column) when it does not compile;
// never anything else but std::bad_alloc.
Program parseScript(StringView source);
// The same for UTF-8 source (malformed sequences read as U+FFFD).
Program parseScript(std::string_view utf8Source);

// Parses one expression that makes up the whole of `source` (as Eval does), interning its
// names into `names`.
ExprPtr parseExpression(StringView source, NameTable& names);

}  // namespace ravelin::script
