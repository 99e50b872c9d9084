// A late-bound JScript front end: every call goes through GetIDsOfNames and Invoke by DISPID.
var failures = 0;
function check(cond, what) {
  if (!cond) { WScript.Echo("FAILED: " + what); failures++; }
}

var ctl = new ActiveXObject("TOV.HTMLIEControl"); // the VBScript client reads Version by both ProgIDs

// Without InitControl there is no browser: the history methods answer code 3 as their return value.
check(ctl.GoBack() == 3, "GoBack() before InitControl gives 3");
check(ctl.DoRefresh() == 3, "DoRefresh() before InitControl gives 3");

// Properties put and read by name; what they mean is the component tests' business.
ctl.URLPrefixLocal = "http://srv/app/";
check(ctl.URLPrefixLocal == "http://srv/app/", "URLPrefixLocal round trip");
ctl.UIFlag = 0x40002;
check(ctl.UIFlag == 0x40002, "UIFlag round trip");
ctl.SimpleBrowse = 5;
check(ctl.SimpleBrowse == 1, "SimpleBrowse 5 reads back as 1");

var threw = false;
try { ctl.NoSuchMember(); } catch (e) { threw = true; }
check(threw, "an unknown name fails");

ctl = null;
if (failures == 0) WScript.Echo("SCRIPT-OK");
WScript.Quit(failures);
