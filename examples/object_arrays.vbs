' The object arrays: lists of library objects and of numbers, how they grow, what removal does
' and the errors they raise. Run with: ravelin examples/object_arrays.vbs
Option Explicit
SetLocale "en-US"

' Makes a clsError holding a code and a description, to have objects worth storing.
Function MakeError(code, description)
  Dim e
  Set e = CreateObject("Ravelin.clsError")
  e.init code, "example", description
  Set MakeError = e
End Function

' Shows the error left by the statement before, then clears it.
Sub ShowError(label)
  If Err.Number <> 0 Then
    WScript.Echo "  " & label & " raises " & Err.Number & " [" & Err.Source & "] " & Err.Description
  Else
    WScript.Echo "  " & label & " raises nothing"
  End If
  Err.Clear
End Sub

' Lists the rows of a clsLArrayDouble2 as Item1/Item2 pairs.
Function RowsOf(pairs)
  Dim text, row
  For row = 0 To pairs.getCount() - 1
    text = text & " " & pairs.Item1(row) & "/" & pairs.Item2(row)
  Next
  RowsOf = Mid(text, 2)
End Function

Dim list, i, keyed, pairs, numbers, objects, strings, anyObjects, two, dummy

WScript.Echo "clsLArrayObject"
Set list = CreateObject("Ravelin.clsLArrayObject")
For i = 1 To 3
  list.add MakeError(i, "error " & i)
Next
WScript.Echo "  getCount: " & list.getCount()
WScript.Echo "  item(1): " & list.item(1).getDescription()
' remove keeps the order of the others.
WScript.Echo "  remove(0): " & list.remove(0)
WScript.Echo "  remove(5): " & list.remove(5)
WScript.Echo "  now item(0) and item(1): " & list.item(0).getCode() & ", " & list.item(1).getCode()
Set list.item(0) = MakeError(9, "replaced")
WScript.Echo "  item(0) after Set: " & list.item(0).getDescription()
list.removeAll
WScript.Echo "  after removeAll, getCount: " & list.getCount()
' The array starts with 500 slots and grows two at a time whenever it is full.
For i = 1 To 501
  list.add Nothing
Next
WScript.Echo "  after 501 adds, getCount: " & list.getCount()
list.allocateSpacePublic 3
WScript.Echo "  allocateSpacePublic 3, getCount: " & list.getCount()
list.allocateSpacePublic 10, True, True
WScript.Echo "  allocateSpacePublic 10 with reset, getCount: " & list.getCount()

On Error Resume Next
dummy = list.item(0)
ShowError "item(0)"
list.copyObject list
ShowError "copyObject"
On Error GoTo 0

WScript.Echo "clsLArrayDouble"
Set numbers = CreateObject("Ravelin.clsLArrayDouble")
numbers.add 1.5
numbers.add -2
numbers.item(1) = 2.25
WScript.Echo "  items: " & numbers.item(0) & ", " & numbers.item(1)
On Error Resume Next
dummy = numbers.item(2)
ShowError "item(2)"
numbers.item(2) = 0
ShowError "item(2) = 0"
On Error GoTo 0

WScript.Echo "clsLArrayDouble2"
Set pairs = CreateObject("Ravelin.clsLArrayDouble2")
pairs.add 3, 30
pairs.add 1, 10
pairs.add 2, 20
pairs.orderValues 1
WScript.Echo "  by Item1: " & RowsOf(pairs)
pairs.Item2(0) = 99
pairs.orderValues 2
WScript.Echo "  Item2(0) = 99, then by Item2: " & RowsOf(pairs)
' The bad-index texts are the library's own, even where they name another property.
On Error Resume Next
dummy = pairs.Item1(3)
ShowError "Item1(3)"
pairs.Item1(3) = 0
ShowError "Item1(3) = 0"
dummy = pairs.Item2(3)
ShowError "Item2(3)"
pairs.Item2(3) = 0
ShowError "Item2(3) = 0"
On Error GoTo 0

WScript.Echo "clsLArrayLongObject"
Set keyed = CreateObject("Ravelin.clsLArrayLongObject")
' Each pair lands after the keys that are less or equal: the array stays sorted and stable.
WScript.Echo "  addSortAscByKey(5): " & keyed.addSortAscByKey(5, MakeError(5, "first five"))
WScript.Echo "  addSortAscByKey(3): " & keyed.addSortAscByKey(3, MakeError(3, "three"))
WScript.Echo "  addSortAscByKey(5): " & keyed.addSortAscByKey(5, MakeError(5, "second five"))
WScript.Echo "  addSortAscByKey(1): " & keyed.addSortAscByKey(1, MakeError(1, "one"))
WScript.Echo "  keys: " & keyed.ItemKey(0) & "," & keyed.ItemKey(1) & "," & keyed.ItemKey(2) & "," & keyed.ItemKey(3)
' Lookups by key take the last element with that key.
WScript.Echo "  ItemIndex(5): " & keyed.ItemIndex(5) & ", find(5): " & keyed.find(5).getDescription()
WScript.Echo "  removeWithKey(5): " & keyed.removeWithKey(5) & ", now find(5): " & keyed.find(5).getDescription()
WScript.Echo "  removeWithKey(4): " & keyed.removeWithKey(4)
On Error Resume Next
dummy = keyed.removeWithKey(4, False, True)
ShowError "removeWithKey(4, False, True)"
keyed.ItemKey(7) = 1
ShowError "ItemKey(7) = 1"
On Error GoTo 0

WScript.Echo "clsArrayObject"
Set objects = CreateObject("Ravelin.clsArrayObject")
Set strings = CreateObject("Ravelin.clsArrayString")
strings.add "held"
WScript.Echo "  add(clsArrayString): " & objects.add(strings)
WScript.Echo "  Count: " & objects.Count & ", getClassIdAsString: " & objects.getClassIdAsString()
On Error Resume Next
' Only objects with the copy interface fit: clsArrayDouble has none.
objects.add CreateObject("Ravelin.clsArrayDouble")
ShowError "add(clsArrayDouble)"
dummy = objects.item(1)
ShowError "item(1)"
objects.copyObject objects
ShowError "copyObject"
On Error GoTo 0
WScript.Echo "  removeItem(0): " & objects.removeItem(0) & ", Count: " & objects.Count

WScript.Echo "clsArrayAnyObject"
Set anyObjects = CreateObject("Ravelin.clsArrayAnyObject")
anyObjects.add CreateObject("Ravelin.clsArrayDouble")
anyObjects.add Nothing
WScript.Echo "  Count: " & anyObjects.Count & ", TypeName(item(0)): " & TypeName(anyObjects.item(0))
WScript.Echo "  removeLastItem: " & anyObjects.removeLastItem() & ", Count: " & anyObjects.Count

WScript.Echo "clsArrayObject2"
Set two = CreateObject("Ravelin.clsArrayObject2")
two.add strings, Nothing
two.setItem1 MakeError(2, "second column"), 0
WScript.Echo "  getItem0(0): " & TypeName(two.getItem0(0)) & ", getItem1(0): " & two.getItem1(0).getDescription()
On Error Resume Next
dummy = two.getItem1(1)
ShowError "getItem1(1)"
two.copyObject two
ShowError "copyObject"
On Error GoTo 0
