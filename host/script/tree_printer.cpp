#include <charconv>
#include <ravelin/host/script/tree_printer.hpp>

namespace ravelin::script {

namespace {

std::string_view binaryName(BinaryOp op) {
  switch (op) {
    case BinaryOp::Power:
      return "^";
    case BinaryOp::Multiply:
      return "*";
    case BinaryOp::Divide:
      return "/";
    case BinaryOp::IntDivide:
      return "\\";
    case BinaryOp::Mod:
      return "mod";
    case BinaryOp::Add:
      return "+";
    case BinaryOp::Subtract:
      return "-";
    case BinaryOp::Concat:
      return "&";
    case BinaryOp::Equal:
      return "=";
    case BinaryOp::NotEqual:
      return "<>";
    case BinaryOp::Less:
      return "<";
    case BinaryOp::Greater:
      return ">";
    case BinaryOp::LessEqual:
      return "<=";
    case BinaryOp::GreaterEqual:
      return ">=";
    case BinaryOp::Is:
      return "is";
    case BinaryOp::And:
      return "and";
    case BinaryOp::Or:
      return "or";
    case BinaryOp::Xor:
      return "xor";
    case BinaryOp::Eqv:
      return "eqv";
    case BinaryOp::Imp:
      return "imp";
  }
  return "?";
}

void appendDouble(std::string& out, double d) {
  char buffer[32];
  auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, d);
  out.append(buffer, ec == std::errc() ? end : buffer);
}

class Printer {
 public:
  std::string out;

  void literal(const Variant& v) {
    switch (v.type()) {
      case VarType::Empty:
        out += "Empty";
        break;
      case VarType::Null:
        out += "Null";
        break;
      case VarType::Integer:
        out += std::to_string(v.asInteger());
        break;
      case VarType::Long:
        out += std::to_string(v.asLong()) + "&";
        break;
      case VarType::Double:
        appendDouble(out, v.asDouble());
        out += "#";
        break;
      case VarType::Boolean:
        out += v.asBoolean() ? "True" : "False";
        break;
      case VarType::Object:
        out += "Nothing";
        break;
      case VarType::Date:
        out += "#";
        appendDouble(out, v.asDate().serial);
        out += "#";
        break;
      case VarType::String:
        out += '"';
        for (char c : toUtf8(v.asString())) {
          if (c == '"') out += '"';
          out += c;
        }
        out += '"';
        break;
      case VarType::Error:
        out += "Missing";
        break;
      default:
        out += "?";
        break;
    }
  }

  void argument(const Argument& a) {
    out += ' ';
    if (a.isOmitted()) {
      out += '_';
      return;
    }
    if (a.isNamed()) out += toUtf8(a.name) + ":=";
    if (a.byValue) out += "(byval ";
    expr(*a.value);
    if (a.byValue) out += ')';
  }

  void expr(const Expr& e) {
    switch (e.kind) {
      case ExprKind::Literal:
        literal(static_cast<const LiteralExpr&>(e).value);
        break;
      case ExprKind::Name:
        out += toUtf8(static_cast<const NameExpr&>(e).name);
        break;
      case ExprKind::Member: {
        const auto& m = static_cast<const MemberExpr&>(e);
        out += "(. ";
        if (m.object) {
          expr(*m.object);
        } else {
          out += '@';
        }
        out += ' ' + toUtf8(m.name) + ')';
        break;
      }
      case ExprKind::Apply: {
        const auto& a = static_cast<const ApplyExpr&>(e);
        out += "(apply ";
        expr(*a.callee);
        for (const Argument& arg : a.args)
          argument(arg);
        out += ')';
        break;
      }
      case ExprKind::Unary: {
        const auto& u = static_cast<const UnaryExpr&>(e);
        out += u.op == UnaryOp::Negate ? "(neg " : u.op == UnaryOp::Not ? "(not " : "(plus ";
        expr(*u.operand);
        out += ')';
        break;
      }
      case ExprKind::Binary: {
        const auto& b = static_cast<const BinaryExpr&>(e);
        out += '(';
        out += binaryName(b.op);
        out += ' ';
        expr(*b.left);
        out += ' ';
        expr(*b.right);
        out += ')';
        break;
      }
    }
  }

  void block(std::string_view head, const Block& body) {
    out += '(';
    out += head;
    for (const StmtPtr& s : body) {
      out += ' ';
      stmt(*s);
    }
    out += ')';
  }

  void visibility(Visibility v) {
    if (v == Visibility::Public) out += "public ";
    if (v == Visibility::Private) out += "private ";
  }

  void dimVariable(const DimVariable& v) {
    out += ' ';
    if (!v.isArray) {
      out += toUtf8(v.name);
      return;
    }
    out += '(' + toUtf8(v.name);
    for (const ExprPtr& b : v.bounds) {
      out += ' ';
      expr(*b);
    }
    out += ')';
  }

  void stmt(const Stmt& s) {
    switch (s.kind) {
      case StmtKind::Assign: {
        const auto& a = static_cast<const AssignStmt&>(s);
        out += a.isSet ? "(set " : "(let ";
        expr(*a.target);
        out += ' ';
        expr(*a.value);
        out += ')';
        break;
      }
      case StmtKind::Call: {
        const auto& c = static_cast<const CallStmt&>(s);
        out += "(call ";
        expr(*c.callee);
        for (const Argument& arg : c.args)
          argument(arg);
        out += ')';
        break;
      }
      case StmtKind::Dim: {
        const auto& d = static_cast<const DimStmt&>(s);
        out += '(';
        visibility(d.visibility);
        out += "dim";
        for (const DimVariable& v : d.variables)
          dimVariable(v);
        out += ')';
        break;
      }
      case StmtKind::ReDim: {
        const auto& d = static_cast<const ReDimStmt&>(s);
        out += d.preserve ? "(redim preserve" : "(redim";
        for (const DimVariable& v : d.variables)
          dimVariable(v);
        out += ')';
        break;
      }
      case StmtKind::Erase:
        out += "(erase " + toUtf8(static_cast<const EraseStmt&>(s).array->name) + ')';
        break;
      case StmtKind::Const: {
        const auto& c = static_cast<const ConstStmt&>(s);
        out += '(';
        visibility(c.visibility);
        out += "const";
        for (const ConstDefinition& d : c.constants) {
          out += " (" + toUtf8(d.name) + ' ';
          literal(d.value);
          out += ')';
        }
        out += ')';
        break;
      }
      case StmtKind::If: {
        const auto& i = static_cast<const IfStmt&>(s);
        out += "(if";
        for (const IfBranch& b : i.branches) {
          out += ' ';
          expr(*b.condition);
          out += ' ';
          block("then", b.body);
        }
        if (!i.elseBody.empty()) {
          out += ' ';
          block("else", i.elseBody);
        }
        out += ')';
        break;
      }
      case StmtKind::Select: {
        const auto& sel = static_cast<const SelectStmt&>(s);
        out += "(select ";
        expr(*sel.subject);
        for (const CaseClause& c : sel.cases) {
          out += " (case (";
          bool first = true;
          for (const CaseTest& t : c.tests) {
            if (!first) out += ' ';
            first = false;
            if (t.kind == CaseTest::Kind::Value) {
              expr(*t.value);
            } else if (t.kind == CaseTest::Kind::Range) {
              out += "(to ";
              expr(*t.value);
              out += ' ';
              expr(*t.upper);
              out += ')';
            } else {
              out += "(is ";
              out += binaryName(t.comparison);
              out += ' ';
              expr(*t.value);
              out += ')';
            }
          }
          out += ") ";
          block("do", c.body);
          out += ')';
        }
        if (sel.hasElse) {
          out += ' ';
          block("else", sel.elseBody);
        }
        out += ')';
        break;
      }
      case StmtKind::For: {
        const auto& f = static_cast<const ForStmt&>(s);
        out += "(for " + toUtf8(f.variable->name) + ' ';
        expr(*f.from);
        out += ' ';
        expr(*f.to);
        if (f.step) {
          out += " (step ";
          expr(*f.step);
          out += ')';
        }
        out += ' ';
        block("do", f.body);
        out += ')';
        break;
      }
      case StmtKind::ForEach: {
        const auto& f = static_cast<const ForEachStmt&>(s);
        out += "(foreach " + toUtf8(f.variable->name) + ' ';
        expr(*f.collection);
        out += ' ';
        block("do", f.body);
        out += ')';
        break;
      }
      case StmtKind::Do: {
        const auto& d = static_cast<const DoStmt&>(s);
        if (d.isWhileWend) {
          out += "(while-wend ";
        } else if (d.test == DoStmt::Test::None) {
          out += "(do ";
        } else {
          out += d.test == DoStmt::Test::While ? "(do-while" : "(do-until";
          out += d.testAtTop ? "-top " : "-bottom ";
        }
        if (d.condition) {
          expr(*d.condition);
          out += ' ';
        }
        block("do", d.body);
        out += ')';
        break;
      }
      case StmtKind::Exit: {
        static constexpr std::string_view kTargets[] = {"do", "for", "sub", "function"};
        out += "(exit ";
        out += kTargets[static_cast<int>(static_cast<const ExitStmt&>(s).target)];
        out += ')';
        break;
      }
      case StmtKind::With: {
        const auto& w = static_cast<const WithStmt&>(s);
        out += "(with ";
        expr(*w.object);
        out += ' ';
        block("do", w.body);
        out += ')';
        break;
      }
      case StmtKind::OnError:
        out += static_cast<const OnErrorStmt&>(s).resumeNext ? "(on-error resume-next)"
                                                             : "(on-error goto-0)";
        break;
    }
  }

  void procedure(const Procedure& p) {
    out += '(';
    visibility(p.visibility);
    out += p.isFunction ? "function " : "sub ";
    out += toUtf8(p.name) + " (";
    bool first = true;
    for (const Parameter& param : p.parameters) {
      if (!first) out += ' ';
      first = false;
      std::string text = toUtf8(param.name);
      if (param.isArray) text += "()";
      if (!param.byRef) text = "(byval " + text + ")";
      if (param.optional) {
        out += "(optional " + text;
        if (!param.defaultValue.isMissing()) {
          out += ' ';
          literal(param.defaultValue);
        }
        out += ')';
      } else {
        out += text;
      }
    }
    out += ") ";
    block("do", p.body);
    out += ')';
  }
};

}  // namespace

std::string printExpression(const Expr& e) {
  Printer p;
  p.expr(e);
  return std::move(p.out);
}

std::string printStatement(const Stmt& s) {
  Printer p;
  p.stmt(s);
  return std::move(p.out);
}

std::string printProgram(const Program& program) {
  Printer p;
  auto line = [&p] {
    if (!p.out.empty()) p.out += '\n';
  };
  if (program.optionExplicit) p.out += "(option explicit)";
  for (const auto& proc : program.procedures) {
    line();
    p.procedure(*proc);
  }
  for (const StmtPtr& s : program.body) {
    line();
    p.stmt(*s);
  }
  return std::move(p.out);
}

}  // namespace ravelin::script
