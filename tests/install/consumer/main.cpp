// Uses the installed library: a Long array through its C++ interface, then one created and
// called by name as an automation client does.
#include <iostream>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <vector>

int main() {
  ravelin::clsArrayLong values;
  values.add(3);
  values.add(-1);
  values.add(40);
  std::cout << ravelin::toUtf8(values.getItemsAsList()) << '\n';

  const ravelin::ObjectRef byName = ravelin::libraryRegistry().create(u"Ravelin.clsArrayLong");
  std::vector<ravelin::CallArgument> arguments{ravelin::Variant(u"12")};
  ravelin::callMember(byName, u"add", ravelin::MemberKind::Method, arguments);
  std::vector<ravelin::CallArgument> none;
  const ravelin::Variant list =
      ravelin::callMember(byName, u"getItemsAsList", ravelin::MemberKind::Method, none);
  std::cout << ravelin::toUtf8(list.asString()) << '\n';
}
