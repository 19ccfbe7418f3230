// A hostile page, made from FUZZ_SEED: every choice, at load and at run time,
// comes from one seeded generator, so a seed replays its page. It creates
// objects of every MIME type the plug-in serves (and a few it does not),
// learns each object's names by asking `name in object`, then reads, writes
// and calls them with hostile values, collects every object handed out and
// works on those too, adds and removes listeners (some throw, re-enter or
// remove their own element), removes, re-adds and restyles elements, and
// lets timers and the receiver's events interleave. It ends with the line
// "PASS fuzz page done" on the console; what the run shows beyond that (a
// crash, a hang, references left held) is for the driver to judge.
(function () {
  var state = FUZZ_SEED >>> 0;
  function next() {  // mulberry32
    state = (state + 0x6d2b79f5) >>> 0;
    var t = state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 4294967296;
  }
  function below(n) { return Math.floor(next() * n); }
  function pick(list) { return list[below(list.length)]; }

  var TYPES = ['application/oipfApplicationManager', 'application/oipfConfiguration',
    'application/oipfCapabilities', 'application/oipfSearchManager',
    'application/oipfParentalControlManager', 'video/broadcast', 'video/mpeg', 'video/mp4',
    'video/mpeg4', 'audio/mpeg', 'audio/mp4', 'application/oipfRecordingScheduler',
    'application/oipfDrmAgent', 'application/vnd.dvb.ait+xml',
    'application/x-not-ours', 'video/x-unknown', 'text/plain'];
  var EVENTS = ['PlayStateChange', 'ChannelChangeSucceeded', 'ChannelChangeError', 'PlayPositionChanged',
    'ProgrammesChanged', 'ParentalRatingChange', 'ParentalRatingError', 'SelectedComponentChanged',
    'StreamEvent', 'DRMRightsError', 'DRMMessageResult', 'DRMSystemMessage', 'MetadataSearch',
    'PVREvent', 'LowMemory', 'ApplicationLoadError', 'ApplicationLoaded', 'KeyPress', '', 'P', 'x'];
  var HUGE = new Array(1 << (10 + below(8))).join('\u00e9x');
  var pool = [];       // every object seen: plug-in objects and what they handed out
  var poolNames = [];  // the names each of them answers to
  var elements = [];   // the object elements made
  var depth = 0;
  var steps = 0;

  function hostile() {
    switch (below(24)) {
      case 0: return 0;
      case 1: return -1;
      case 2: return 2147483647;
      case 3: return -2147483648;
      case 4: return 4294967295;
      case 5: return 4294967296;
      case 6: return pick([NaN, Infinity, -Infinity, -0, 0.5, 1e308, -1e-308]);
      case 7: return '';
      case 8: return HUGE;
      case 9: return pick(['\u0000', '\ud800', 'dvb://1.2.3', 'dvb://current.ait/1.1', 'dvb://current/x',
                           'ccid:1.2.3', 'Programme.name', 'urn:dvb:casystemid:19188', '1', '-5']);
      case 10: return null;
      case 11: return undefined;
      case 12: return pick([true, false]);
      case 13: return {};
      case 14: return [1, 'two', null];
      case 15: return listener();
      case 16: return { handleEvent: listener() };
      case 17: return pick([document.body, document.createElement('div'), window, document]);
      case 18: case 19: case 20: return pool.length ? pick(pool) : null;
      case 21: return elements.length ? pick(elements) : null;
      case 22: return below(100);
      default: return pick(EVENTS);
    }
  }
  function args() {
    var list = [];
    for (var n = below(5); n > 0; n--) list.push(hostile());
    return list;
  }

  // The names an object answers to, asked of the object itself, as
  // properties and methods (a method reads as a function).
  function namesOf(o) {
    var known = { properties: [], methods: [] };
    for (var i = 0; i < FUZZ_NAMES.length; i++) {
      try {
        if (FUZZ_NAMES[i] in o)
          known[typeof o[FUZZ_NAMES[i]] === 'function' ? 'methods' : 'properties'].push(FUZZ_NAMES[i]);
      } catch (e) {}
    }
    return known;
  }
  // A plug-in's methods are called as the page writes them: the browser
  // passes exactly the arguments written.
  function call(o, name, a) {
    switch (a.length) {
      case 0: return o[name]();
      case 1: return below(2) ? o[name]() : o[name](a[0]);
      case 2: return o[name](a[0], a[1]);
      case 3: return o[name](a[0], a[1], a[2]);
      default: return o[name](a[0], a[1], a[2], a[3]);
    }
  }
  function keep(value) {
    if (value && (typeof value === 'object' || typeof value === 'function') && pool.length < 400 &&
        pool.indexOf(value) < 0) {
      pool.push(value);
      poolNames.push(null);  // learnt at first use: an element's plug-in comes with layout
    }
  }
  function nameFor(at, which) {
    var known = poolNames[at];
    if (!known || (!known.properties.length && below(4) === 0)) known = poolNames[at] = namesOf(pool[at]);
    return known[which].length && below(8) ? pick(known[which]) : pick(FUZZ_NAMES);
  }

  function listener() {
    var kind = below(5);
    return function () {
      if (kind === 0) throw new Error('listener throws');
      if (kind === 1 && depth < 3) { depth++; try { act(); act(); } finally { depth--; } }
      if (kind === 2 && elements.length) remove(pick(elements));
      if (kind === 3) keep(arguments[0]);
    };
  }

  function remove(el) { if (el.parentNode) el.parentNode.removeChild(el); }

  function create() {
    var el = document.createElement('object');
    el.setAttribute('type', pick(TYPES));
    if (below(2)) el.setAttribute('data', pick(['clip.mp4', '', 'http://127.0.0.1:1/x.mp4', 'dvb://1.2.3']));
    if (below(3) === 0) el.setAttribute('width', String(hostile()));
    el.style.position = 'absolute';
    el.style.left = below(1400) - 60 + 'px';
    el.style.top = below(800) - 40 + 'px';
    el.style.width = pick([0, 1, 64, 320, 1280, 9000]) + 'px';
    el.style.height = pick([0, 1, 36, 180, 720, 9000]) + 'px';
    (below(4) ? document.body : pick([document.body, document.documentElement])).appendChild(el);
    elements.push(el);
    keep(el);
  }

  function restyle(el) {
    switch (below(6)) {
      case 0: el.style.display = pick(['none', 'block', 'inline']); break;
      case 1: el.style.width = below(2000) - 10 + 'px'; break;
      case 2: el.style.height = below(1200) - 10 + 'px'; break;
      case 3: el.style.visibility = pick(['hidden', 'visible']); break;
      case 4: el.style.left = below(1400) - 100 + 'px'; break;
      default: el.style.position = pick(['absolute', 'relative', 'fixed', 'static']);
    }
  }

  function item(o) {
    var n = 0;
    try { n = o.length | 0; } catch (e) {}
    var i = pick([-1, 0, n - 1, n, n + 1, 2147483647, 4294967295, below(n + 2)]);
    keep(o.item(i));
  }

  function act() {
    steps++;
    var at = below(pool.length);
    var o = pool.length ? pool[at] : null;
    try {
      switch (below(20)) {
        case 0: case 1: create(); break;
        case 2: case 3: case 4: if (o) keep(o[nameFor(at, 'properties')]); break;
        case 5: case 6: if (o) o[nameFor(at, 'properties')] = hostile(); break;
        case 7: case 8: case 9: case 10: {
          if (!o) break;
          var name = nameFor(at, 'methods');
          keep(call(o, name, args()));
          break;
        }
        case 11: if (o && 'item' in o) item(o); break;
        case 12: if (o) o.addEventListener(pick(EVENTS), pick([listener(), hostile()]), below(2) === 0); break;
        case 13: if (o) o.removeEventListener(pick([hostile(), pick(EVENTS)]), hostile(), false); break;
        case 14: if (o) o['on' + pick(EVENTS)] = pick([listener(), hostile()]); break;
        case 15: if (elements.length) remove(pick(elements)); break;
        case 16: if (elements.length) document.body.appendChild(pick(elements)); break;
        case 17: if (elements.length) restyle(pick(elements)); break;
        case 18: {
          var junk = [];
          for (var i = 0; i < 2000 + below(20000); i++) junk.push({ i: i });
          if (window.gc) window.gc();
          break;
        }
        default: setTimeout(act, below(40));
      }
    } catch (e) {
      // A plug-in's false answer is an exception in the page: expected.
    }
  }

  window.onerror = function () { return true; };
  var rounds = 20 + below(30);
  function round() {
    for (var n = 1 + below(12); n > 0; n--) act();
    if (--rounds > 0) setTimeout(round, below(30));
    else setTimeout(function () { console.log('PASS fuzz page done (' + steps + ' steps)'); }, 200 + below(300));
  }
  for (var i = 0; i < 3 + below(6); i++) create();
  setTimeout(round, 0);
})();
