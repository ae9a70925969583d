#pragma once

#include <QString>

QString GetPlatformName(); // the distribution's pretty name on Linux
QString GetCountryName();  // the machine locale's country in English ("United States")
QString GetScreenSize();   // "width x height" of the primary screen, empty without one
