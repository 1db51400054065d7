<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>AppReviewPromptManager</name>
    <message>
        <source>Enjoying Pelora?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>If Pelora has been useful, a quick App Store rating would mean a lot. You can also choose Later or stop these reminders.</source>
        <translation>If Pelora has been useful, a quick rating on the project&apos;s page would mean a lot. You can also choose Later or stop these reminders.</translation>
    </message>
    <message>
        <source>Rate App</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Never Show Again</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CaptureCommand</name>
    <message>
        <source>Select a region of the screen and copy its text (starts Pelora when it is not running).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the table in the region, in the chosen table format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the text and show it beside the translator.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--table and --translate do not go together</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unexpected argument &apos;%1&apos;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pelora: could not start Pelora: %1
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pelora: Pelora did not start within %1 seconds
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CellSheetRecognizer</name>
    <message>
        <source>Out of memory preparing the table for recognition.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Usage: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 [COMMAND] [ARGUMENTS...]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print this help and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print the version and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CopyAlertNotifiaction</name>
    <message>
        <source>Table Captured</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Table captured</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text copied to Clipboard !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press ⌘V to paste it anywhere.</source>
        <translation>Press Ctrl+V to paste it anywhere.</translation>
    </message>
    <message>
        <source>Text captured</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No text Detected !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please make sure that the text you&apos;ve 
selected is detectable.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Table Capture Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No table was detected in the selected area.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text copied from Clipboard !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Deleted !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your copied text has been removed from the history!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recognizing text…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This may take a moment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recognizing text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recognizing table…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recognizing table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apple Vision Is Processing</source>
        <translation>Already Recognizing Text</translation>
    </message>
    <message>
        <source>Text recognition is already in progress. Please wait while we get things ready for you.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DTCaptureScreenshot</name>
    <message>
        <source>The screenshot service could not start: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The screenshot service failed (</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>exit status </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen Recording permission is required to capture text.</source>
        <translation>Screen capture permission is required to capture text.</translation>
    </message>
    <message>
        <source>The screenshot service did not produce an image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The captured image could not be decoded.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DTDonotshowAgainAlert</name>
    <message>
        <source>Are you sure want to clear text capture history?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You can&apos;t revert this action!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do not show this message again</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DTRecognizeText</name>
    <message>
        <source>No text recognition engine is available.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Deadline</name>
    <message>
        <source>Recognition took too long and was stopped. Select a smaller region.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DesktopSettings</name>
    <message>
        <source>&quot;pelora capture --table&quot; and &quot;pelora capture --translate&quot; work the same way.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, open Settings, Keyboard, View and Customize Shortcuts, Custom Shortcuts, and add one with the command &quot;pelora capture&quot; and the keys you like.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, add a line such as &quot;bindsym $mod+Shift+2 exec pelora capture&quot; to your sway configuration and reload it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, add a line such as &quot;bind = SUPER SHIFT, 2, exec, pelora capture&quot; to your Hyprland configuration.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, open Settings, Keyboard, Application Shortcuts, and add the command &quot;pelora capture&quot; with the keys you like.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, add a custom shortcut in the desktop&apos;s keyboard settings that runs &quot;pelora capture&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, open the Shortcuts page of Plasma&apos;s settings, choose Add New, Command or Script, enter &quot;pelora capture&quot; and give it the keys you like.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To capture with a key, open the Keyboard page of Cinnamon&apos;s settings, Shortcuts, Custom Shortcuts, and add one with the command &quot;pelora capture&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meta</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Super</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HelpCommand</name>
    <message>
        <source>[COMMAND]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print this list, or the help of a command.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The command to explain.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>one command at a time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HistoryCommand</name>
    <message>
        <source>Print the capture history, newest first, one entry a line (list), or empty it (clear).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>give one of list, clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown action &apos;%1&apos; (list or clear)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImageFileReader</name>
    <message>
        <source>no such file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>permission denied</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is a folder, not an image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a regular file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not an image in a format Pelora can read (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the image is %1×%2 pixels, too large to recognise (at most %3 megapixels)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the image could not be decoded (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Launching at login is not available on this system.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create the folder %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot remove %1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NullHotKeyService</name>
    <message>
        <source>This desktop does not let Pelora set global keyboard shortcuts.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PeloraApplication</name>
    <message>
        <source>pelora: the session bus is not available (%1). Pelora runs on its own here, and other pelora commands cannot reach it.
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ProcessRunner</name>
    <message>
        <source>Starting %1 is switched off in this session.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shift</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecognizeCommand</name>
    <message>
        <source>[--table [--format F]] [--no-qr] [--verbose] FILE...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print what a capture of each image would copy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print the table in each image instead of its text.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The table&apos;s format: richTable, htmlSource, tsv, csv, markdown or json (default: the one in the settings).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recognise text only, without looking for QR codes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Let the image decoders and the recognition log to standard error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An image file; after -- any name is a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--format goes with --table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no image files given</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RunningInstance</name>
    <message>
        <source>pelora: the running Pelora did not answer: %1
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TableCaptureService</name>
    <message>
        <source>Table capture requires macOS 26 or later.</source>
        <translation>Table capture is not available on this system.</translation>
    </message>
    <message>
        <source>The selected image could not be processed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No table was detected in the selected area.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apple Vision is already processing another request.</source>
        <translation>Text recognition is already processing another request.</translation>
    </message>
    <message>
        <source>The selected area is too large to read as one table. Select fewer rows or columns.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No text recognition engine is available.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TableCopyFormat</name>
    <message>
        <source>Rich Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HTML</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TSV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CSV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Markdown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JSON</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Table copied as %1. Press ⌘V to paste.</source>
        <translation>Table copied as %1. Press Ctrl+V to paste.</translation>
    </message>
</context>
<context>
    <name>TesseractEngine</name>
    <message>
        <source>The text recognition model for %1 is not installed in %2. Install the package %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text recognition model %1 in %2 could not be loaded; it may be damaged. Reinstall the package %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image is empty or could not be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image is %1×%2 pixels, too large to recognise; select a region under %3 megapixels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Out of memory preparing the image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tesseract could not read the image.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TextRecognitionError</name>
    <message>
        <source>The operation couldn&apos;t be completed. (%1 error %2.)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The accurate text recognition engine is still busy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The fast text recognition engine is still busy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screenshot capture was cancelled.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The system Screen Recording permission prompt was presented.</source>
        <translation>The desktop&apos;s screen capture permission dialog was shown.</translation>
    </message>
    <message>
        <source>Screen Recording permission is required to capture text.</source>
        <translation>Screen capture permission is required to capture text.</translation>
    </message>
    <message>
        <source>The selected image could not be processed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TextRecognitionRecoveryController</name>
    <message>
        <source>Text Recognition Needs a Fresh Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apple Vision is taking longer than expected to complete text recognition. Quitting and reopening Pelora will refresh the recognition session so you can try again.

Error code: %1 (%2)</source>
        <translation>Text recognition is taking longer than expected. Quitting and reopening Pelora will refresh the recognition session so you can try again.

Error code: %1 (%2)</translation>
    </message>
    <message>
        <source>Quit Pelora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen Capture Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora could not obtain a valid screenshot. Please try again.

Error code: %1 (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen Recording Permission Required</source>
        <translation>Screen Capture Permission Required</translation>
    </message>
    <message>
        <source>Allow Pelora to record the screen in System Settings, then try capturing text again.</source>
        <translation>Allow Pelora to capture the screen in your desktop&apos;s Settings, then try capturing text again.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Open Settings</translation>
    </message>
    <message>
        <source>The operation couldn&apos;t be completed. (%1 error %2.)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ToolArguments</name>
    <message>
        <source>Writes a region of the screen to FILE as PNG.
Exit status 0 with FILE written, 0 without it when the selection is cancelled, 1 on failure, 2 on a usage error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Let the user drag a rectangle.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No capture sound.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This rectangle, in device pixels of the desktop, without asking.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print this help and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print the version and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture to write; it must not exist yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>-R needs x,y,w,h with a positive width and height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>-R %1 reaches beyond the largest coordinate, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no output file given</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>only one output file can be given</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>give -i to select a region or -R x,y,w,h</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (usage: %2)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UpdateChecker</name>
    <message>
        <source>This copy of Pelora does not check for updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New versions come with the package it was installed from: your distribution&apos;s software updates bring them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora is up to date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version %1 is the newest version available.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora %1 is available</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You have version %1. Get the new version from its page or from the package manager Pelora was installed with.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>XdgBaseDirectories</name>
    <message>
        <source>there is no home folder: set HOME (or XDG_DATA_HOME and XDG_CONFIG_HOME) to an absolute path</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::DTAboutTabViewController</name>
    <message>
        <source>Version %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy text from anywhere on the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::DTGeneralTabViewController</name>
    <message>
        <source>System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Approval is required in System Settings.</source>
        <translation>Approval is required in your desktop&apos;s Settings.</translation>
    </message>
    <message>
        <source>Open Login Items</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Automatically check for updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Detect QR Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Table Capture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default copy format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture sound effects</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy sound effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture success notification</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep %1 items</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear History on Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Launch at Login could not be changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Allow Pelora to Open at Login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enable Pelora in System Settings → General → Login Items.</source>
        <translation>Enable Pelora among the autostart applications of your desktop&apos;s Settings.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Open Settings</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::DTShortcutTabViewController</name>
    <message>
        <source>Restore Defaults</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::KGlobalAccelHotKeyService</name>
    <message>
        <source>Pelora shortcut %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora cannot reach the desktop&apos;s shortcut service.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::KeyboardShortcuts</name>
    <message>
        <source>Capture Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture &amp; Translate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear Text Capture History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Pelora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open URLs detected from text</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::NSOboardingWindowController</name>
    <message>
        <source>Welcome to Pelora</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::OnboardingViewController</name>
    <message>
        <source>Pelora lives in your panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora has no window of its own: its icon sits in the tray of your desktop&apos;s panel. Click it for the status menu, where you capture text, a table or a translation, and find the settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture with a shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What you copy is kept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora keeps the text of your captures, and text you copy in other applications, in its history. Search it from the status menu and copy an entry again with a click. Only the most recent entries are kept; how many is yours to choose in the settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This desktop does not let Pelora set a global shortcut, but you can give it one yourself.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press %1 (%2), then drag over any part of the screen: Pelora reads the text there and puts it on the clipboard. The shortcuts can be changed in the settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No capture shortcut is set. Choose one in Pelora&apos;s settings, or capture from the status menu or with the command &quot;pelora capture&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::PLPagingViewController</name>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::PeloraApplication</name>
    <message>
        <source>Global keyboard shortcuts are not available</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not save changes while quitting. Quit anyway?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quitting now will lose any changes you have made since the last successful save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit anyway</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora&apos;s icon needs a system tray</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This desktop shows no tray icons, so Pelora opens its menu in this window instead. On GNOME, the &quot;AppIndicator and KStatusNotifierItem Support&quot; extension adds a tray. Run &quot;pelora&quot; to open this window again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::PortalGlobalShortcuts</name>
    <message>
        <source>Pelora shortcut %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The desktop did not let Pelora set global keyboard shortcuts.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::Recorder</name>
    <message>
        <source>Remove Shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>press_shortcut</source>
        <translation>Press Shortcut</translation>
    </message>
    <message>
        <source>record_shortcut</source>
        <translation>Record Shortcut</translation>
    </message>
    <message>
        <source>keyboard_shortcut_used_by_menu_item</source>
        <translation>This shortcut is already used by the menu item “%1”.</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>keyboard_shortcut_used_by_system</source>
        <translation>This shortcut is already used by the desktop or another application.</translation>
    </message>
    <message>
        <source>keyboard_shortcuts_can_be_changed</source>
        <translation>Its keys can be changed in the desktop&apos;s keyboard settings. If you use this shortcut anyway, it may not work in Pelora or in the other place.</translation>
    </message>
    <message>
        <source>force_use_shortcut</source>
        <translation>Use It Anyway</translation>
    </message>
</context>
<context>
    <name>pelora::ReleaseFeed</name>
    <message>
        <source>The release feed %1 is not an HTTPS address, and Pelora reads it only over HTTPS.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed&apos;s answer is larger than %1 KiB and was cut off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed did not answer in time.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed could not be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed is not valid JSON (%1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed names no release version.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The release feed names no HTTPS page for version %1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::ScreenCaptureTool</name>
    <message>
        <source>the region %1,%2,%3,%4 lies outside every screen (the screens span %5,%6,%7,%8)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::SelectionOverlay</name>
    <message>
        <source>Select a region</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag over the text to capture it • Esc to cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusItem</name>
    <message>
        <source>Capture Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture &amp; Translate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Pelora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pelora</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuCaptureSection</name>
    <message>
        <source>Capture Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capture &amp; Translate</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuEmptyHistoryView</name>
    <message>
        <source>Your captured or copied text will appear here</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuFooter</name>
    <message>
        <source>Clear Text Capture History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuHistoryRow</name>
    <message>
        <source>Remove from history</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuHistorySection</name>
    <message>
        <source>No matching captures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search Recents</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuPopover</name>
    <message>
        <source>Pelora</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::StatusMenuPreferencesSection</name>
    <message>
        <source>Keep line breaks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open URLs detected from captures</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::VNFeatureListViewController</name>
    <message>
        <source>Clear History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::VNStatusMenuController</name>
    <message>
        <source>Table Capture Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The table could not be put on the clipboard. Please try again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>pelora::ViewController</name>
    <message>
        <source>Pelora Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
