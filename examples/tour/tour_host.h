#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "user/form_driver.h"
#include "user/user.h"
#include "user/user_error.h"

inline void Expect(bool fulfilled, const char* what) {
  if (!fulfilled) throw TUserError(what);
}

/// The example host, started for one stop of the tour, with its user. Ended with this object.
class TTourHost {
 public:
  /// What the user is to read in a control, and whether it takes input.
  struct TSight {
    const char* Control;
    std::string Reading;
    bool Enabled = true;
  };

  /// Pictures and the log of calls are written to the directory, their names begin with the stop's.
  /// Throws TUserError when the program does not start.
  TTourHost(const std::wstring& directory, const std::string& stop, const std::wstring& arguments);
  /// The program a second time, for the same stop.
  TTourHost(const TTourHost& earlier, const std::string& name)
      : TTourHost(earlier.FDirectory, earlier.FStop + "_" + name, L"") {}
  TTourHost(const TTourHost&) = delete;
  TTourHost& operator=(const TTourHost&) = delete;
  ~TTourHost();

  TUser& User() { return *FUser; }
  TFormDriver& Window() { return *FWindow; }
  /// The text of the script on screen.
  std::string Script() const;
  /// By keys, to the start of the text's first occurrence in the script.
  void GoTo(std::string_view text);
  /// Waits until the form shows all of that, then takes a picture of it if that has a name.
  void See(const TFormDriver& form, const std::string& picture, const std::vector<TSight>& sights);
  void WaitItems(const TFormDriver& form, const char* list, const std::vector<std::string>& items);
  void WaitScript(const std::string& text);
  void Picture(const TFormDriver& form, const std::string& name);
  /// Of the whole screen.
  void PictureOfAll(const std::string& name);
  /// Closes the host as a user does. Throws when it does not end, or not well.
  void Quit();

 private:
  std::string FileFor(const std::string& name) const;

  std::wstring FDirectory;
  std::string FStop;
  PROCESS_INFORMATION FProcess{};
  std::unique_ptr<TUser> FUser;
  std::unique_ptr<TFormDriver> FWindow;
};
