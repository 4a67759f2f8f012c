// A compact S-expression form of the syntax tree, for tests and for debugging scripts.
#pragma once

#include <ravelin/host/script/ast.hpp>
#include <string>

namespace ravelin::script {

// One expression: literals typed by suffix (5 Integer, 5& Long, 5# Double, "s", #serial#,
// True, Null, Empty, Nothing), operators in prefix form ((+ a b), (neg a), (not a)), members as
// (. object name) (. @ name inside With), calls and indexes as (apply callee args...), where an
// omitted argument is
// "_", a named one name:=value and one passed by value (byval x).
std::string printExpression(const Expr& e);

// One statement, e.g. (let x 1), (call f a), (if c (then ...) (else ...)).
std::string printStatement(const Stmt& s);

// A whole program: "(option explicit)" when set, then the procedures, then the top-level
// statements, one per line.
std::string printProgram(const Program& program);

}  // namespace ravelin::script
