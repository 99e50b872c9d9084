// Injected into every frame before page scripts (Page.addScriptToEvaluateOnNewDocument).
//
// Chromium never issues a request for the unknown "TOVEVENT:" scheme, so the
// engine could not see such a navigation in Fetch.requestPaused. Just before a
// link or form builds its request we point it at http://tovevent.invalid/<text>,
// the engine catches that request and aborts it, and we put the author's text
// back on the next task so the DOM looks untouched.
(function () {
  'use strict';
  var w = window;
  // A second run in the same document only revives the listeners.
  try {
    if (typeof w.__tovHooks === 'function') { w.__tovHooks(); return; }
  } catch (e) {
    return;
  }

  // Keep our own references; page scripts may replace these later.
  var apply = Reflect.apply;
  var EP = Element.prototype;
  var getAttr = EP.getAttribute, setAttr = EP.setAttribute, hasAttr = EP.hasAttribute, remAttr = EP.removeAttribute;
  var closest = EP.closest, d = document;
  var setTO = w.setTimeout, enc = w.encodeURIComponent, stringify = JSON.stringify;
  var SCHEME = /^\s*tovevent:/i;
  var BASE = 'http://tovevent.invalid/';

  // Set an attribute for the duration of the current task.
  function setFor(el, name, val) {
    var had = apply(hasAttr, el, [name]);
    var orig = had ? apply(getAttr, el, [name]) : null;
    apply(setAttr, el, [name, val]);
    setTO(function () {
      try {
        // Leave it alone if the page changed it in the meantime.
        var now = apply(hasAttr, el, [name]) ? apply(getAttr, el, [name]) : null;
        if (now !== val) return;
        if (had) apply(setAttr, el, [name, orig]); else apply(remAttr, el, [name]);
      } catch (e) {}
    }, 0);
  }

  // Point a TOVEVENT: attribute at the reserved host; true if it was one.
  function swap(el, name) {
    if (!el || !apply(hasAttr, el, [name])) return false;
    var v = apply(getAttr, el, [name]);
    if (!SCHEME.test(v)) return false;
    setFor(el, name, BASE + enc(v.trim()));
    return true;
  }

  // Is there a frame of this name in our page? Inaccessible frames count as a miss.
  function frameExists(name) {
    var seen = 0;
    function walk(win) {
      var fs = win.frames, n = fs.length;
      for (var i = 0; i < n && seen++ < 500; i++) {
        try { if (fs[i].name === name) return true; } catch (e) {}
        try { if (walk(fs[i])) return true; } catch (e) {}
      }
      return false;
    }
    try { return walk(w.top); } catch (e) { return false; }
  }

  // A TOVEVENT request that would open a new window is invisible to the
  // engine's page session, so keep it in this frame instead. Named frames of
  // this page stay targeted: their requests arrive on the same session.
  function keepInPage(el, name) {
    var t = apply(hasAttr, el, [name]) ? apply(getAttr, el, [name]) : null;
    if (t === null && name === 'target') {
      var base = d.querySelector('base[target]');
      t = base ? apply(getAttr, base, ['target']) : null;
    }
    if (t === null) return;
    var lt = t.trim().toLowerCase();
    if (lt === '' || lt === '_self' || lt === '_parent' || lt === '_top') return;
    if (lt !== '_blank' && frameExists(t)) return;
    setFor(el, name, '_self');
  }

  function onClick(e) {
    try {
      // composedPath reaches links around a click inside a shadow root.
      var path = e.composedPath();
      for (var i = 0; i < path.length; i++) {
        var n = path[i];
        if (n && n.nodeType === 1) {
          var a = apply(closest, n, ['a[href],area[href]']);
          if (!a) continue;
          if (!swap(a, 'href')) return;
          if (e.button === 1 || e.ctrlKey || e.shiftKey || e.metaKey) {
            // Would open a new tab or window; load it in this frame instead.
            e.preventDefault();
            w.location.assign(apply(getAttr, a, ['href']));
          } else {
            keepInPage(a, 'target');
          }
          return;
        }
      }
    } catch (err) {}
  }

  // A submitter's formaction wins over the form's action.
  function prepForm(form, submitter) {
    try {
      var sub = submitter && submitter.nodeType === 1 ? submitter : null;
      var ok = sub && apply(hasAttr, sub, ['formaction']) ? swap(sub, 'formaction') : swap(form, 'action');
      if (!ok) return;
      if (sub && apply(hasAttr, sub, ['formtarget'])) keepInPage(sub, 'formtarget');
      else keepInPage(form, 'target');
    } catch (err) {}
  }

  function onSubmit(e) {
    try {
      if (e.target instanceof HTMLFormElement) prepForm(e.target, e.submitter);
    } catch (err) {}
  }

  // Window coordinates of the top-level viewport; climb while frameElement is reachable.
  function onContextMenu(e) {
    try {
      var cb = w.__tovContextMenu;
      if (typeof cb !== 'function') return;
      var x = e.clientX, y = e.clientY, win = w;
      for (var k = 0; k < 32; k++) {
        var fe;
        try { fe = win.frameElement; } catch (err) { fe = null; }
        if (!fe) break;
        var r = fe.getBoundingClientRect();
        var cs = win.parent.getComputedStyle(fe);
        x += r.left + fe.clientLeft + (parseFloat(cs.paddingLeft) || 0);
        y += r.top + fe.clientTop + (parseFloat(cs.paddingTop) || 0);
        win = win.parent;
      }
      cb(stringify({ x: Math.round(x), y: Math.round(y) }));
    } catch (err) {}
  }

  // document.open() (from the page, or Page.setDocumentContent) erases the
  // window's listeners but keeps this global, so check with a ping and re-add.
  var ET = EventTarget.prototype, addL = ET.addEventListener, fire = ET.dispatchEvent, Ev = w.Event;
  var PING = '__tovping', alive = false;
  function onPing(e) { alive = true; e.stopImmediatePropagation(); }
  function ensure() {
    try {
      alive = false;
      apply(fire, w, [new Ev(PING)]);
      if (alive) return;
      apply(addL, w, ['click', onClick, true]);
      apply(addL, w, ['auxclick', onClick, true]); // middle click opens links from here
      apply(addL, w, ['submit', onSubmit, true]);
      apply(addL, w, ['contextmenu', onContextMenu, true]);
      apply(addL, w, [PING, onPing, true]);
    } catch (err) {}
  }
  try {
    Object.defineProperty(w, '__tovHooks', { value: ensure });
  } catch (err) {
    return;
  }
  ensure();

  try {
    var DP = Document.prototype;
    ['open', 'write', 'writeln'].forEach(function (k) {
      var f = DP[k];
      if (typeof f !== 'function') return;
      DP[k] = function () {
        try {
          return apply(f, this, arguments);
        } finally {
          if (this === d) ensure();
        }
      };
    });
  } catch (err) {}

  // form.submit() fires no submit event.
  try {
    var FP = HTMLFormElement.prototype, origSubmit = FP.submit;
    if (typeof origSubmit === 'function') {
      FP.submit = function submit() {
        prepForm(this, null);
        return apply(origSubmit, this, arguments);
      };
    }
  } catch (err) {}
})();
