// Receiver descriptions: a JSON file that describes the receiver to
// simulate (channels with programmes, components and scheduled stream
// events; device identity; key groups; preferences; network interfaces).
// Each section given replaces that part of the built-in receiver; sections
// left out keep the built-in values.
#ifndef ORVANE_SIM_DESCRIPTION_H
#define ORVANE_SIM_DESCRIPTION_H

#include <string>

namespace sim {

// Loads the built-in receiver and then the description in `path` over it.
// On failure the built-in receiver stays and *error says why.
bool LoadDescription(const std::string& path, std::string* error);
// The same from the text of a description.
bool LoadDescriptionText(const std::string& text, std::string* error);

}  // namespace sim

#endif
