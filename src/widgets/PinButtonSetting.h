#pragma once

class UserDefaults;

/// Whether the person wants a pin button in the history window: yes, until they say otherwise.
bool isPinButtonWanted(const UserDefaults &defaults);

void setPinButtonWanted(UserDefaults &defaults, bool isWanted);
