#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/yPath.h"

namespace zelkova {

void describeFrame(std::vector<Class>& classes) {
  classes.push_back(Description<yPath>("yPath", "Where the library lives")
                        .method("AppPath", &yPath::AppPath, "Folder from which the library was loaded")
                        .done());
}

}  // namespace zelkova
