// What the receiver's browser gives every document before its own scripts
// run, besides the key constants: a console whose messages carry all their
// arguments, window.oipfObjectFactory, and collections read with list[i].
#ifndef ORVANE_RUNNER_PAGE_SCRIPTS_H
#define ORVANE_RUNNER_PAGE_SCRIPTS_H

#include <QString>

// console.log/info/warn/error/debug with several arguments print them all,
// separated by spaces (the engine itself passes on only the first).
QString ConsoleScript();
// window.oipfObjectFactory: isObjectSupported answers from the MIME types
// the plug-in announces; the create...Object methods make object elements
// of those types. Objects with no picture of their own are put in the
// document at once (a plug-in element is scriptable only there); video
// objects are handed out for the page to place.
QString ObjectFactoryScript();
// list[i] on a plug-in collection is list.item(i), as on a receiver: the
// engine never hands a numeric index to a plug-in object, so indices 0 to
// 4095 are accessors on Object.prototype (a plug-in object's prototype)
// that call item(i) on plug-in objects that have it and read undefined on
// anything else; writing one makes an own property as before.
QString CollectionIndexScript();

#endif
