' clsError holds an error's code, source and description and renders them as one text; the
' library's own error codes have names. Run with: ravelin examples/errors.vbs
Option Explicit

Dim held
Set held = CreateObject("Ravelin.clsError")
held.init 13, "Ravelin", "Type mismatch"
WScript.Echo "getCode: " & held.getCode()
WScript.Echo "getSource: " & held.getSource()
WScript.Echo "getDescription: " & held.getDescription()
' CompleteErrorDescription puts a CR LF between the two parts; show it as two lines.
WScript.Echo Replace(held.CompleteErrorDescription, vbCrLf, " | ")

' The library's codes are the object-error base plus a small offset.
WScript.Echo "CCEC_InvalidIndex = " & CCEC_InvalidIndex & " = &H" & Hex(CCEC_InvalidIndex)
WScript.Echo "CCEC_ItemNotFound = " & CCEC_ItemNotFound

' An error raised by a library object, caught and kept in a clsError.
Dim names, kept
Set names = CreateObject("Ravelin.clsArrayString")
names.add "first"
On Error Resume Next
names.item(5) = "sixth"
Set kept = CreateObject("Ravelin.clsError")
kept.init Err.Number, Err.Source, Err.Description
On Error GoTo 0
WScript.Echo "kept: " & Replace(kept.CompleteErrorDescription, vbCrLf, " | ")
WScript.Echo "same as CCEC_InvalidIndex: " & (kept.getCode() = CCEC_InvalidIndex)

' Err.Raise with a library code, trapped, then cleared.
On Error Resume Next
Err.Raise CCEC_InvalidParameter, "examples/errors.vbs", "viCount must be positive"
WScript.Echo "raised: " & Err.Number & " [" & Err.Source & "] " & Err.Description
Err.Clear
WScript.Echo "after Clear: " & Err.Number
On Error GoTo 0

' clsError converts its arguments as declared: a code that is not a number is a type mismatch.
On Error Resume Next
held.init "thirteen", "x", "y"
WScript.Echo "init ""thirteen"" raises " & Err.Number & ": " & Err.Description
On Error GoTo 0
