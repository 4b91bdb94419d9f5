#include "host/windowing/functions/provider.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "abi/quelm_functions.h"
#include "host/windowing/functions/layer_functions.h"

namespace {

const std::vector<std::string>& names() {
  static const std::vector<std::string> kNames = {
#define QUELM_TYPED(name, ...) #name,
#define QUELM_OPAQUE(name) #name,
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
  };
  return kNames;
}

TEST(Provider, AnswersAll364NamesOfTheImportTable) {
  const QuelmLookupFn look_up = quelmGetAPPAPIFunc();
  ASSERT_EQ(names().size(), 364U);
  for (const std::string& name : names()) {
    EXPECT_NE(look_up(name.c_str()), nullptr) << name;
  }
}

TEST(Provider, AnswersItsInterfaceVersionToANullName) {
  EXPECT_EQ(reinterpret_cast<intptr_t>(quelmGetAPPAPIFunc()(nullptr)), 256);
}

TEST(Provider, KnowsNoOtherNames) {
  for (const char* name : {"", "sendmessage", "SendMessage ", "SendMessageA", "no_window_server"}) {
    EXPECT_EQ(quelmGetAPPAPIFunc()(name), nullptr) << name;
  }
}

TEST(Provider, IsFoundByModulesAmongTheSymbolsOfTheProgram) {
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "quelmGetAPPAPIFunc"),
            reinterpret_cast<void*>(&quelmGetAPPAPIFunc));
}

TEST(Provider, AnswersNothingDoneWhereAFunctionNeedsAWindowServer) {
  for (const char* name : {"BrowseForFiles", "OpenClipboard", "CreatePopupMenu", "GetDC"}) {
    EXPECT_EQ(reinterpret_cast<QuelmAnyFn>(quelmGetAPPAPIFunc()(name))(), 0) << name;
  }
}

TEST(Provider, GivesModulesTheFunctionsThatDoSomething) {
  namespace functions = velmor::windowing::functions;
  const auto is = [](const char* name, auto* function) {
    return quelmGetAPPAPIFunc()(name) == reinterpret_cast<void*>(function);
  };
  EXPECT_TRUE(is("SendMessage", &functions::SendMessage));
  EXPECT_TRUE(is("QUELM_DialogBox", &functions::QUELM_DialogBox));
  EXPECT_TRUE(is("DestroyWindow", &functions::DestroyWindow));
  EXPECT_TRUE(is("QUELM_CB_AddString", &functions::QUELM_CB_AddString));
  EXPECT_TRUE(is("GetPrivateProfileString", &functions::GetPrivateProfileString));
  EXPECT_TRUE(is("lstrcpyn", &functions::lstrcpyn));
}

}  // namespace
