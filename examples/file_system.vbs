' The suite's file services: the text rules for paths and file names, a chain of folders made in
' the temporary folder, the settings of a till kept in an INI file, and the version of a file.
Option Explicit

Dim files, fso, root, deepest, settings, version, name, info, sample

Set files = CreateObject("Ravelin.FileSystem")
Set fso = files.MyFso

WScript.Echo "AddBackSlashToStringOnNeed:", files.AddBackSlashToStringOnNeed(" C:\Data "), _
             files.AddBackSlashToStringOnNeed("")
WScript.Echo "SameFileExtension report.TXT *.txt:", CStr(files.SameFileExtension("report.TXT", "*.txt"))
WScript.Echo "SameFileExtension report *.txt:", CStr(files.SameFileExtension("report", "*.txt"))
For Each name In Array("prices.dbf", "a,b.txt", "com1", "COM10", "name.")
  WScript.Echo "ValidFileName " & name & ":", CStr(files.ValidFileName(name))
Next

' A folder chain under the temporary folder, made shallowest first.
root = fso.BuildPath(files.GetTempDirectory(), fso.GetTempName())
deepest = fso.BuildPath(fso.BuildPath(fso.BuildPath(root, "till"), "2026"), "11")
WScript.Echo "MakeDirectories:", CStr(files.MakeDirectories(deepest))
WScript.Echo "Folder there:", CStr(fso.FolderExists(deepest))

' The till's settings: written, read back, a missing key gives the default.
settings = fso.BuildPath(root, "till.ini")
WScript.Echo "WriteINIString:", CStr(files.WriteINIString("Till", "Printer", "  EPSON TM-T20  ", settings))
files.WriteINIString "Till", "Drawer", "COM3", settings
files.WriteINIString "Prices", "Rounding", "0.05", settings
WScript.Echo "Printer:", "[" & files.ReadINIString("till", "PRINTER", "none", settings) & "]"
WScript.Echo "Drawer:", files.ReadINIString("Till", "Drawer", "none", settings)
WScript.Echo "Missing key:", files.ReadINIString("Till", "Scale", "none", settings)
WScript.Echo "Missing file:", files.ReadINIString("Till", "Drawer", "none", _
                                                 fso.BuildPath(root, "other.ini"))

' The version of a Windows library (2.5.0.17, of which the third number is not reported), read
' from the file itself on every system; a file without a version resource reports zeros.
version = files.GetFileVersion("version_sample.dll")
WScript.Echo "Version of version_sample.dll:", version.Major, version.Minor, version.Revision
sample = "version_sample.dll"
info = files.GetFileInfo(sample)
WScript.Echo "Signature:", Hex(info.Signature), "FileVersionMSh:", info.FileVersionMSh, _
             "FileVersionLSl:", info.FileVersionLSl, "FileType:", info.FileType
version = files.GetFileVersion(settings)
WScript.Echo "Version of till.ini:", version.Major, version.Minor, version.Revision

WScript.Echo "Machine name known:", CStr(Len(files.CurrentMachineName()) > 0)
WScript.Echo "Network path \\server\share\prices.dbf:", _
             CStr(files.IsPathNetworkPath("\\server\share\prices.dbf"))
WScript.Echo "Temporary folder available:", CStr(files.IsNetworkPathAvailable(files.GetTempDirectory()))
WScript.Echo "Empty folder available:", CStr(files.IsNetworkPathAvailable(""))

fso.DeleteFolder root, True
WScript.Echo "Cleaned up:", CStr(Not fso.FolderExists(root))
