' A late-bound front end: creates the control by its ProgID and reads its interface version.
Option Explicit
Dim ctl
Set ctl = CreateObject("TOV.HTMLIEControl")
WScript.Echo "CreateObject(""TOV.HTMLIEControl"") -> " & TypeName(ctl)
WScript.Echo "Version = " & ctl.Version
Set ctl = Nothing
