// A late-bound JScript front end: every call goes through GetIDsOfNames and Invoke by DISPID.
var failures = 0;
function check(cond, what) {
  if (!cond) { WScript.Echo("FAILED: " + what); failures++; }
}

var ctl = new ActiveXObject("TOV.HTMLIEControl");
check(ctl.Version == 62, "Version is 62");

// Without InitControl there is no browser: the history methods answer code 3 as their return value.
check(ctl.GoBack() == 3, "GoBack() before InitControl gives 3");
check(ctl.DoRefresh() == 3, "DoRefresh() before InitControl gives 3");

ctl.URLPrefixLocal = "http://srv/app/";
check(ctl.URLPrefixLocal == "http://srv/app/", "URLPrefixLocal round trip");
ctl.TargetFrame = "detail";
check(ctl.TargetFrame == "detail", "TargetFrame round trip");
// The NavigationStyle getter answers the target frame.
check(ctl.NavigationStyle == "detail", "NavigationStyle get returns TargetFrame");
ctl.UIFlag = 0x40002;
check(ctl.UIFlag == 0x40002, "UIFlag round trip");
ctl.SimpleBrowse = 5;
check(ctl.SimpleBrowse == 1, "SimpleBrowse 5 reads back as 1");
check(ctl.PostDataModified == 0, "PostDataModified starts at 0");
check(ctl.DocumentComplete == 0, "DocumentComplete starts at 0");

var threw = false;
try { ctl.NoSuchMember(); } catch (e) { threw = true; }
check(threw, "an unknown name fails");

ctl = null;
if (failures == 0) WScript.Echo("SCRIPT-OK");
WScript.Quit(failures);
