/// Texts on the page.
#ifndef HOST_PLOT_PLOT_TEXT_H
#define HOST_PLOT_PLOT_TEXT_H

#include "db/database.h"
#include "host/plot.h"

namespace host {

/// True for the types that drawText knows.
bool isText(std::string_view type);

/// Draws a TEXT, ATTRIB, ATTDEF or MTEXT. @param to  from the coordinates of its block to the page
void drawText(Database& drawing, Slot entity, const AcGeMatrix3d& to, PlotColor color,
              PlotCanvas& canvas);

}  // namespace host

#endif
