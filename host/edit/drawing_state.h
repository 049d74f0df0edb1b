/// What the editor knows of a drawing beyond what its file keeps: variables that end with it, the
/// coordinate systems and views before the present ones, and which space is worked in.
#ifndef HOST_EDIT_DRAWING_STATE_H
#define HOST_EDIT_DRAWING_STATE_H

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "db/database.h"
#include "edit/sysvars.h"
#include "edit/ucs.h"
#include "edit/view.h"

namespace host {

/// The last few states before the present one.
template <class State>
class History {
  public:
    void push(State state) {
        constexpr size_t kMost = 10;
        if (states_.size() == kMost) states_.pop_front();
        states_.push_back(std::move(state));
    }
    bool empty() const { return states_.empty(); }
    State pop() {
        State state = std::move(states_.back());
        states_.pop_back();
        return state;
    }

  private:
    std::deque<State> states_;
};

struct DrawingState {
    std::map<std::string, VariableValue, std::less<>> variables;
    AcGePoint3d last_point;              ///< WCS
    View paper_view;                     ///< of a layout that has no VIEWPORT for paper space
    int layout_viewport = 1;             ///< as currentViewport with TILEMODE 0
    History<Ucs> systems[2];             ///< of model space, of paper space
    std::map<int, History<View>> views;  ///< by the number of a layout's viewport; 0 the tiles
    std::vector<AcDbObjectId> previous_choice;  ///< what was last chosen at a prompt
    std::vector<AcDbObjectId> implied_choice;   ///< what is chosen for the next prompt
};

/// The state of a living drawing, with its defaults when it is first asked for.
DrawingState& drawingState(Database& database);
/// Views of the viewport that is worked in.
History<View>& viewHistory(Database& database);

/// True when model space is worked in directly (TILEMODE 1), and not through a layout.
bool inModelTiles(Database& database);
/// Number of the viewport that is worked in, as CVPORT: 2 is the tiled viewport of model space, 1
/// paper space itself; with TILEMODE 0 greater ones are viewports of the layout.
int currentViewport(Database& database);
/// Works in another viewport. @return false when the drawing has none of this number
bool setCurrentViewport(Database& database, int number);
/// True when paper space itself is worked in.
bool inPaperSpace(Database& database);
/// True for a layer that new entities can go to: neither frozen nor an attached drawing's.
bool canBeCurrentLayer(Database& database, Slot layer);
/// The VIEWPORT entity of this number in the layout (1 is paper space itself); kNoSlot for none.
Slot layoutViewport(Database& database, int number);

}  // namespace host

#endif
