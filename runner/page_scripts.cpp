#include "runner/page_scripts.h"

QString ConsoleScript() {
  return QStringLiteral(R"JS((function(){
if (!window.console || console.__orvane) return;
function text(v) {
  if (typeof v === 'string') return v;
  if (v && typeof v === 'object' && !(v instanceof Error)) {
    try { var s = JSON.stringify(v); if (s !== undefined && s !== '{}') return s; } catch (e) {}
  }
  return String(v);
}
['log', 'info', 'warn', 'error', 'debug'].forEach(function(name) {
  var original = console[name];
  if (typeof original !== 'function') return;
  console[name] = function() {
    if (arguments.length < 2) return original.apply(console, arguments);
    return original.call(console, Array.prototype.map.call(arguments, text).join(' '));
  };
});
console.__orvane = true;
})();)JS");
}

QString ObjectFactoryScript() {
  return QStringLiteral(R"JS((function(){
if (window.oipfObjectFactory) return;
function supported(type) {
  var types = navigator.mimeTypes || [];
  for (var i = 0; i < types.length; i++)
    if (types[i].type.toLowerCase() === type.toLowerCase() && types[i].enabledPlugin) return true;
  return false;
}
function make(type, placed) {
  var o = document.createElement('object');
  o.setAttribute('type', type);
  if (!placed) return o;
  // No picture of its own: an invisible corner of the document.
  o.setAttribute('style', 'position:absolute;left:0;top:0;width:0;height:0');
  var parent = document.body || document.documentElement;
  if (parent) parent.appendChild(o);
  return o;
}
var factory = {
  isObjectSupported: function(type) { return supported(String(type)); },
  createVideoBroadcastObject: function() { return make('video/broadcast', false); },
  createVideoMpegObject: function() { return make('video/mpeg', false); },
  createApplicationManagerObject: function() { return make('application/oipfApplicationManager', true); },
  createCapabilitiesObject: function() { return make('application/oipfCapabilities', true); },
  createConfigurationObject: function() { return make('application/oipfConfiguration', true); },
  createDrmAgentObject: function() { return make('application/oipfDrmAgent', true); },
  createParentalControlManagerObject: function() { return make('application/oipfParentalControlManager', true); },
  createRecordingSchedulerObject: function() { return make('application/oipfRecordingScheduler', true); },
  createSearchManagerObject: function() { return make('application/oipfSearchManager', true); }
};
try {
  Object.defineProperty(window, 'oipfObjectFactory', {value: factory, enumerable: true});
} catch (e) {
  window.oipfObjectFactory = factory;
}
})();)JS");
}

QString CollectionIndexScript() {
  return QStringLiteral(R"JS((function(){
if (Object.prototype.hasOwnProperty('__orvaneIndexed')) return;
// A plug-in object: callable, with Object.prototype as its prototype.
function collection(o) {
  return typeof o === 'function' && Object.getPrototypeOf(o) === Object.prototype && 'item' in o;
}
function index(i) {
  return {
    get: function() { return collection(this) ? this.item(i) : undefined; },
    set: function(v) {
      Object.defineProperty(this, i, {value: v, writable: true, enumerable: true, configurable: true});
    },
    configurable: true, enumerable: false
  };
}
for (var i = 0; i < 4096; i++) Object.defineProperty(Object.prototype, i, index(i));
Object.defineProperty(Object.prototype, '__orvaneIndexed', {value: true});
})();)JS");
}
