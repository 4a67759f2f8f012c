' clsError by name: init, the getters, CompleteErrorDescription, late-bound argument checks.
Dim e, text
Set e = CreateObject("clsError")
WScript.Echo TypeName(e), "[" & e.getCode() & "]", "[" & e.getSource() & "]", "[" & e.getDescription() & "]"
e.init CCEC_ItemNotFound, "Tarn.Quillmark.Common", "clsCollection.getItem()"
WScript.Echo e.getCode(), e.getSource(), e.getDescription()
text = e.CompleteErrorDescription
WScript.Echo Len(text), InStr(text, vbCrLf)
WScript.Echo Replace(text, vbCrLf, "/")
' Arguments are converted to the declared types: Long, String, String.
e.init "12", 3.5, True
WScript.Echo Replace(e.CompleteErrorDescription, vbCrLf, "/")
On Error Resume Next
e.init 1, "only two"
WScript.Echo "two arguments:", Err.Number, Err.Description
Err.Clear
e.init 2147483648, "x", "y"
WScript.Echo "code too large:", Err.Number, Err.Description
Err.Clear
e.init Null, "x", "y"
WScript.Echo "Null code:", Err.Number, Err.Description
Err.Clear
e.noSuchMember
WScript.Echo "unknown member:", Err.Number, Err.Description
Err.Clear
Set e = CreateObject("Ravelin.clsNoSuchClass")
WScript.Echo "unknown class:", Err.Number, Err.Description
