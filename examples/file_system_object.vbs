' The scripting file-system object: path texts, a folder of the script's own, text files in the
' ANSI code page and in UTF-16, copies and moves, the errors of wrong calls, and the drive that
' holds it all. Only facts that do not depend on the machine are printed.
Option Explicit
SetLocale "en-US"
Const ForReading = 1, ForWriting = 2, ForAppending = 8
Const TristateTrue = -1

Dim fso, work, prices, greeting, stream
Set fso = CreateObject("Scripting.FileSystemObject")

' Path texts follow the Windows object's rules on every system.
WScript.Echo fso.GetParentFolderName("C:\Data\prices.dbf")
WScript.Echo fso.GetFileName("C:\Data\prices.dbf"), fso.GetBaseName("C:\Data\prices.dbf"), _
             fso.GetExtensionName("C:\Data\prices.dbf")
WScript.Echo fso.GetDriveName("\\fileserver\prices\2024\day.dbf"), fso.GetDriveName("c:\x")
WScript.Echo fso.BuildPath("C:\Data", "prices.dbf"), fso.BuildPath("C:\Data\", "\prices.dbf")
WScript.Echo fso.GetAbsolutePathName("C:\Data\..\Archive\.\2024\")

' A folder of the script's own, in its working folder, under a name nobody else uses.
work = fso.BuildPath(fso.GetAbsolutePathName("."), fso.GetTempName)
fso.CreateFolder work
WScript.Echo "Folder made:", fso.FolderExists(work)

prices = fso.BuildPath(work, "prices.txt")
Set stream = fso.CreateTextFile(prices)
stream.WriteLine "Café;1.50"
stream.WriteLine "Pão de queijo;0.80"
stream.Close
Set stream = fso.OpenTextFile(prices, ForAppending)
stream.Write "Chá;2.10"
stream.Close

Set stream = fso.OpenTextFile(prices, ForReading)
Do While Not stream.AtEndOfStream
  WScript.Echo "Line " & stream.Line & ": " & stream.ReadLine
Loop
stream.Close

' UTF-16 keeps characters that the ANSI code page has not.
greeting = fso.BuildPath(work, "greeting.txt")
Set stream = fso.CreateTextFile(greeting, True, True)
stream.WriteLine "Привет, 世界"
stream.Close
Set stream = fso.OpenTextFile(greeting, ForReading, False, TristateTrue)
WScript.Echo stream.ReadLine, stream.AtEndOfStream
stream.Close

fso.CopyFile prices, fso.BuildPath(work, "copy.txt")
fso.MoveFile fso.BuildPath(work, "copy.txt"), fso.BuildPath(work, "moved.txt")
WScript.Echo "Copied and moved:", fso.FileExists(fso.BuildPath(work, "copy.txt")), _
             fso.FileExists(fso.BuildPath(work, "moved.txt"))

On Error Resume Next
fso.CreateTextFile prices, False
WScript.Echo "Create over a file:", Err.Number, Err.Description
Err.Clear
Set stream = fso.OpenTextFile(fso.BuildPath(work, "none.txt"))
WScript.Echo "Open a missing file:", Err.Number, Err.Description
Err.Clear
Set stream = fso.OpenTextFile(prices, ForWriting)
WScript.Echo stream.ReadLine
WScript.Echo "Read a file opened for writing:", Err.Number, Err.Description
Err.Clear
stream.Close
Set stream = fso.OpenTextFile(prices)
WScript.Echo stream.ReadAll
WScript.Echo "Read past the end:", Err.Number, Err.Description
Err.Clear
stream.Close
Set stream = fso.GetDrive("$:")
WScript.Echo "A drive named in another shape:", Err.Number, Err.Description
Err.Clear
fso.DeleteFolder fso.BuildPath(work, "none")
WScript.Echo "Delete a missing folder:", Err.Number, Err.Description
Err.Clear
On Error GoTo 0

WScript.Echo "Drive ready:", fso.GetDrive(fso.GetDriveName(work)).IsReady
fso.DeleteFolder work
WScript.Echo "Folder left:", fso.FolderExists(work)
