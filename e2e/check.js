// The browser tests' reporting: each page ends with one console line, "PASS",
// "FAIL: " and the reasons, or "SKIP: " and why the test cannot run in this
// build, which orvane-run --result turns into its exit code. Uncaught script errors and a page's own deadline fail the page.
// A page that is done still listens for a short settle time before it
// reports: an event that arrives once too often, or a check that fails late,
// fails the page.
var check = (function () {
  var SETTLE_MS = 400;
  var failures = [];
  var finished = false;
  var settling = false;
  var waiting = {};
  var came = {};

  function finish() {
    if (finished) return;
    finished = true;
    console.log(failures.length ? 'FAIL: ' + failures.join('; ') : 'PASS');
  }

  function settle() {
    if (settling || finished) return;
    settling = true;
    setTimeout(finish, SETTLE_MS);
  }

  function show(v) {
    if (typeof v === 'string') return '"' + v + '"';
    return String(v);
  }

  window.onerror = function (message, source, line) {
    failures.push('uncaught error: ' + message + ' (line ' + line + ')');
    finish();
  };

  return {
    ok: function (condition, what) {
      if (!condition) failures.push(what);
      return !!condition;
    },
    equal: function (actual, expected, what) {
      if (actual !== expected) failures.push(what + ': ' + show(actual) + ', expected ' + show(expected));
      return actual === expected;
    },
    // Calls fn, which is expected to make the plug-in report failure to the
    // script engine (an exception); returns what it threw.
    throws: function (fn, what) {
      try {
        fn();
      } catch (e) {
        return e;
      }
      failures.push(what + ' did not throw');
      return null;
    },
    // Something that must happen before done(): an event still to come.
    expect: function (name) { waiting[name] = true; },
    // An expected event came; coming again is a failure.
    arrived: function (name) {
      if (came[name]) failures.push('came more than once: ' + name);
      if (waiting[name]) came[name] = true;
      delete waiting[name];
    },
    // Runs a step, failing the page on an exception in it.
    step: function (what, fn) {
      return function () {
        try {
          fn.apply(this, arguments);
        } catch (e) {
          failures.push(what + ': exception ' + e);
          finish();
        }
      };
    },
    skip: function (why) {
      if (finished) return;
      finished = true;
      console.log('SKIP: ' + why);
    },
    fail: function (why) {
      failures.push(why);
      finish();
    },
    done: function () {
      if (settling) return;
      for (var name in waiting) failures.push('never came: ' + name);
      settle();
    },
    // Fails the page if it has not finished within ms.
    deadline: function (ms) {
      setTimeout(function () {
        if (finished || settling) return;
        failures.push('deadline of ' + ms + ' ms passed');
        check.done();
      }, ms);
    },
    note: function (text) { console.log(text); }
  };
})();
