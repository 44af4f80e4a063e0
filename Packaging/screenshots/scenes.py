"""Every page and state of the window, each with what a user does to get there. A scene is led through in one process of
the application, from top to bottom."""

import stage

FESTIVAL = "Lantern festival"
MUSEUM = "Harbour museum"
BUTTON = "push button"
ROW = "list item"


def setup(app, shoot):
    for page in ("welcome", "hugging-face", "ollama", "local-tools", "finish"):
        shoot("setup-" + page)
        if page != "finish":
            app.press("Continue")
    app.press("Finish Setup")


def empty_pages(app, shoot):
    app.press("Ready for a meeting", BUTTON)
    app.find("Record a new meeting")
    shoot("library-empty")
    app.key("ctrl+2")
    app.find("No Speaker Profiles")
    shoot("profiles-empty")


def meetings(app, shoot):
    app.press(FESTIVAL, ROW)
    app.find("Transcript ready")
    shoot("meeting")
    app.scroll(9)
    shoot("meeting-speakers")
    app.scroll(40)
    shoot("meeting-transcript")
    app.scroll(-60)
    app.press("Processing, ", BUTTON)
    app.press("Processing Details", BUTTON)
    shoot("meeting-details")
    app.press("Processing, ", BUTTON)
    app.press("Processing Details", BUTTON)
    app.press(MUSEUM, ROW)
    app.find("Transcript ready")
    app.scroll(1)
    app.find("Suggested ")
    shoot("meeting-suggestions")
    app.press("Profiles")
    app.find("Create Profile From This Voice")
    shoot("profile-menu")
    app.press("Create Profile From This Voice")
    app.find("Create", BUTTON)
    shoot("profile-question")
    app.key("Escape")


def states(app, shoot):
    for title, words, name in (("Bicycle", "Processing meeting", "processing"), ("Interview", "Audio ready", "imported"),
                               ("Allotment", "Audio ready", "failed"), ("Orchard", "Finalize", "left-behind")):
        app.press(title, ROW)
        app.find(words)
        shoot("meeting-" + name)
    app.click(app.find("Kitchen roster", ROW), button=3)
    app.find("Show in File Manager")
    shoot("meeting-menu")
    app.key("Escape")
    app.click(app.find("Kitchen roster", ROW))
    app.key("Delete")
    app.find("Delete meeting?")
    shoot("delete-question")
    app.key("Escape")
    app.key("F1")
    app.find("Keyboard Shortcuts")
    shoot("shortcuts")
    app.key("Escape")


def other_pages(app, shoot):
    app.key("ctrl+2")
    app.find("Nadia Haddad", ROW)
    shoot("profiles")
    app.press("Sort")
    shoot("profiles-sort")
    app.key("Escape")
    app.press("Delete All", BUTTON)
    app.find("Delete all voice profiles?")
    shoot("profiles-delete")
    app.key("Escape")
    app.key("ctrl+3")
    app.find("HF_TOKEN")
    shoot("settings")
    app.scroll(60)
    shoot("settings-end")


def recording(app, shoot):
    app.press("Orchard", ROW)
    app.press("Resume", BUTTON)
    app.find("Meeting in progress")
    shoot("recording")
    app.press("Pause", BUTTON)
    app.find("Meeting paused")
    shoot("recording-paused")
    app.key("ctrl+q")
    app.find("Quit while recording?")
    shoot("quit-question")
    app.key("Escape")


def call(app, shoot):
    """The question about a call, with a window in front that looks like one."""
    app.key("ctrl+w")
    app.stage.start(app.program.parent.parent / "tests" / "helpers" / "ShowWindow", "zoom", "zoom", "Zoom Meeting",
                    environment=app.environment)
    window = stage.wait_for(lambda: app.find_window("^Record this meeting"), "the question about the call")
    shoot("call", window)


def long_names(app, shoot):
    for title, name in (("Ein sehr langer", "latin"), ("اجتماع", "arabic"), ("灯籠", "japanese")):
        app.press(title, ROW)
        shoot("long-" + name)
        app.scroll(5)
        shoot(f"long-{name}-speakers")
        app.scroll(60)
        shoot(f"long-{name}-end")
        app.scroll(-99)


# What the library is filled with, and what happens then.
SCENES = [("untouched", setup), ("empty", empty_pages),
          ("fill", meetings), ("fill", states), ("fill", other_pages),
          ("fill", recording), ("fill", call)]

# To be looked at after a change, not for the gallery. Their scripts need fonts of their own.
EXTRA_SCENES = [("long_names", long_names)]
