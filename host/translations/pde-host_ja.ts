<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>PdePrint</name>
    <message>
        <source>Show this help and exit.</source>
        <translation>このヘルプを表示して終了します。</translation>
    </message>
    <message>
        <source>The CUPS printer to start with.</source>
        <translation>最初に選択する CUPS プリンタ。</translation>
    </message>
    <message>
        <source>Start with the extensions of this PPD file; the job goes to the printer chosen in the dialog.</source>
        <translation>この PPD ファイルの拡張機能で開始します。ジョブはダイアログで選択したプリンタに送られます。</translation>
    </message>
    <message>
        <source>Load this extension bundle too, for every printer (repeatable).</source>
        <translation>この拡張機能バンドルもすべてのプリンタで読み込みます（複数指定可）。</translation>
    </message>
    <message>
        <source>Show the dialog and the panels in this language (en, ja).</source>
        <translation>ダイアログとパネルをこの言語で表示します（en、ja）。</translation>
    </message>
    <message>
        <source>The job&apos;s name (default: the first file&apos;s name, without its folder).</source>
        <translation>ジョブ名（省略時: 最初のファイルのフォルダを除いた名前）。</translation>
    </message>
    <message>
        <source>Show the dialog, save a picture of it as the screen shows it to FILE (PNG; the option tabs&apos; places are in its text entries) and exit without printing.</source>
        <translation>ダイアログを表示し、画面に表示されたとおりの画像を FILE に保存して（PNG。オプションタブの位置はテキスト項目に記録されます）、印刷せずに終了します。</translation>
    </message>
    <message>
        <source>The files to print.</source>
        <translation>印刷するファイル。</translation>
    </message>
    <message>
        <source> (see --help)</source>
        <translation>（--help を参照）</translation>
    </message>
    <message>
        <source>give at least one file to print (see --help)</source>
        <translation>印刷するファイルを 1 つ以上指定してください（--help を参照）</translation>
    </message>
    <message>
        <source>give at most one of --printer NAME and --ppd FILE (see --help)</source>
        <translation>--printer NAME と --ppd FILE はどちらか一方だけを指定してください（--help を参照）</translation>
    </message>
    <message>
        <source>--lang %1: not a language (en, ja, ja_JP)</source>
        <translation>--lang %1: 言語ではありません（en、ja、ja_JP）</translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation>%1: 画像を書き込めません</translation>
    </message>
    <message>
        <source>there is no display to show the dialog on (DISPLAY is not set); pde-host prints without one</source>
        <translation>ダイアログを表示するディスプレイがありません（DISPLAY が設定されていません）。ディスプレイなしで印刷するには pde-host を使ってください</translation>
    </message>
    <message>
        <source>%1: not installed, so some texts stay English (Debian package qt6-translations-l10n)</source>
        <translation>%1: インストールされていないため、一部の文字列は英語のままです（Debian パッケージ qt6-translations-l10n）</translation>
    </message>
    <message>
        <source>there is no default printer; name one with --printer NAME</source>
        <translation>デフォルトのプリンタがありません。--printer NAME で指定してください</translation>
    </message>
    <message>
        <source>Prints FILEs to a CUPS printer (the default printer unless --printer or --ppd
says otherwise) through Qt&apos;s print dialog, with one tab per print dialog
extension that the printer&apos;s PPD calls for (*APDialogExtension) and a Summary
tab. Choosing another printer in the dialog brings its own extensions and
saved settings; &quot;Print to File (PDF)&quot; writes a PDF file (a PDF copied, text
and pictures laid out) and sends no job. Print saves every panel; a panel that
refuses (after its alert) keeps the dialog open on its tab. The panels&apos;
settings and every setting of the dialog travel with the job as CUPS job
options, and the job is not held unless a hold is chosen under Properties &gt;
Job Options. &quot;Save as printer defaults&quot; keeps the panels&apos; settings in
~/.cups/lpoptions (mode 0600) for later jobs through lp, lpr and these hosts;
&quot;Clear Saved Settings&quot; on the Summary tab removes them.

Bundles are found by file name in the folders of PDE_PLUGIN_PATH, then in %1,
unless --bundle names them. The dialog speaks the user&apos;s language (LANGUAGE,
LC_ALL, LC_MESSAGES, LANG) when it is English or Japanese, or the one --lang
names.

On success it prints PRINTER-JOBID, or the PDF file&apos;s path. Exit status: 0
printed, 1 usage error or cancelled, 2 the printer, its PPD, the display or
the job could not be had.</source>
        <translation>Qt のプリントダイアログで FILE を CUPS プリンタ（--printer または --ppd の指定がなければデフォルトのプリンタ）に印刷します。
ダイアログには、プリンタの PPD が指定するプリントダイアログ拡張機能（*APDialogExtension）ごとのタブと「概要」タブが表示されます。
ダイアログで別のプリンタを選ぶと、そのプリンタの拡張機能と保存した設定に切り替わります。
「PDF ファイルに出力」を選ぶと PDF ファイルを書き出し（PDF はそのままコピーし、テキストと画像はページに配置します）、ジョブは送信しません。
「印刷」ですべてのパネルを保存します。
パネルが（警告を表示して）保存を拒否した場合は、そのタブを開いたままダイアログが残ります。
パネルの設定とダイアログのすべての設定は CUPS のジョブオプションとしてジョブに含まれ、「プロパティ」の「ジョブオプション」で保留を選ばない限りジョブは保留されません。
「プリンタのデフォルトとして保存」は、パネルの設定を ~/.cups/lpoptions（モード 0600）に保存し、以後の lp、lpr とこれらのホストからのジョブで使います。
「概要」タブの「保存した設定を消去」で削除できます。

バンドルは、--bundle で指定されない限り、PDE_PLUGIN_PATH のフォルダ、次に %1 でファイル名により検索されます。
ダイアログは、ユーザの言語（LANGUAGE、LC_ALL、LC_MESSAGES、LANG）が英語か日本語であればその言語で、--lang を指定すればその言語で表示されます。

成功するとプリンタ名-ジョブ ID、または PDF ファイルのパスを出力します。
終了ステータス: 0 印刷した、1 使い方の誤りまたはキャンセル、2 プリンタ、その PPD、ディスプレイまたはジョブを取得できなかった。</translation>
    </message>
</context>
<context>
    <name>PdfFileOutput</name>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1: 読み込めません: %2</translation>
    </message>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1: 書き込めません: %2</translation>
    </message>
    <message>
        <source>no file to print to was chosen</source>
        <translation>出力先のファイルが選択されていません</translation>
    </message>
    <message>
        <source>%1: cannot be read</source>
        <translation>%1: 読み込めません</translation>
    </message>
    <message>
        <source>%1: a PDF file can be printed to a file only on its own</source>
        <translation>%1: PDF ファイルは単独でのみファイルに出力できます</translation>
    </message>
    <message>
        <source>%1: a %2 file cannot be printed to a PDF file (only PDF, text and picture files can)</source>
        <translation>%1: %2 のファイルは PDF ファイルに出力できません（出力できるのは PDF、テキスト、画像ファイルのみです）</translation>
    </message>
    <message>
        <source>%1: cannot be written</source>
        <translation>%1: 書き込めません</translation>
    </message>
</context>
<context>
    <name>pdehost::HeldJobWindow</name>
    <message>
        <source>Print “%1” on %2</source>
        <translation>“%1” を %2 で印刷</translation>
    </message>
    <message>
        <source>“%1” waits on %2 until you print it.</source>
        <translation>“%1” は印刷の指示があるまで %2 で待機しています。</translation>
    </message>
    <message>
        <source>Some of the printer&apos;s panels cannot be shown:
%1</source>
        <translation>プリンタのパネルの一部を表示できません:
%1</translation>
    </message>
    <message>
        <source>the printer calls for no panel</source>
        <translation>このプリンタはパネルを必要としません</translation>
    </message>
    <message>
        <source>The printer&apos;s panels cannot be shown, so the job stays held until they can be or you cancel it.

%1</source>
        <translation>プリンタのパネルを表示できないため、表示できるようになるか、ジョブを取り消すまで、ジョブは保留されたままです。

%1</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>概要</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>印刷</translation>
    </message>
    <message>
        <source>Keep Held</source>
        <translation>保留のまま</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>ジョブを取り消す</translation>
    </message>
    <message>
        <source>“%1” on %2 no longer waits: %3.</source>
        <translation>%2 の “%1” は待機していません: %3。</translation>
    </message>
</context>
<context>
    <name>pdehost::JobFate</name>
    <message>
        <source>it is held</source>
        <translation>保留されています</translation>
    </message>
    <message>
        <source>it was released</source>
        <translation>解放されました</translation>
    </message>
    <message>
        <source>it was cancelled</source>
        <translation>取り消されました</translation>
    </message>
    <message>
        <source>the scheduler aborted it</source>
        <translation>スケジューラが中止しました</translation>
    </message>
    <message>
        <source>it was printed</source>
        <translation>印刷されました</translation>
    </message>
    <message>
        <source>it no longer exists</source>
        <translation>存在しません</translation>
    </message>
</context>
<context>
    <name>pdehost::LpOptions</name>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1: 読み込めません: %2</translation>
    </message>
    <message>
        <source>%1: its folder cannot be made</source>
        <translation>%1: フォルダを作成できません</translation>
    </message>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1: 書き込めません: %2</translation>
    </message>
</context>
<context>
    <name>pdehost::PdePrintDialog</name>
    <message>
        <source>Summary</source>
        <translation>概要</translation>
    </message>
    <message>
        <source>Clear Saved Settings</source>
        <translation>保存した設定を消去</translation>
    </message>
    <message>
        <source>Removes the extensions&apos; settings saved for this printer</source>
        <translation>このプリンタ用に保存した拡張機能の設定を削除します</translation>
    </message>
    <message>
        <source>Save as printer defaults</source>
        <translation>プリンタのデフォルトとして保存</translation>
    </message>
    <message>
        <source>Keeps the extensions&apos; settings for later jobs to this printer (lp, lpr and these dialogs read them)</source>
        <translation>拡張機能の設定を、このプリンタへの以後のジョブのために保存します（lp、lpr とこれらのダイアログが読み込みます）</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>プリンタ</translation>
    </message>
    <message>
        <source>PDF file</source>
        <translation>PDF ファイル</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>部数</translation>
    </message>
    <message>
        <source>All</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>Long edge</source>
        <translation>長辺綴じ</translation>
    </message>
    <message>
        <source>Short edge</source>
        <translation>短辺綴じ</translation>
    </message>
    <message>
        <source>Two-Sided</source>
        <translation>両面</translation>
    </message>
    <message>
        <source>The extensions&apos; saved settings for %1 were removed; the panels show the printer&apos;s own.</source>
        <translation>%1 用に保存した拡張機能の設定を削除しました。パネルにはプリンタ本来の設定が表示されます。</translation>
    </message>
    <message>
        <source>Print Help</source>
        <translation>プリントのヘルプ</translation>
    </message>
    <message>
        <source>This dialog prints to CUPS. The tabs after Qt&apos;s own come from the printer&apos;s extension bundles and follow the printer chosen under Name; Summary lists what the job will carry. &quot;Save as printer defaults&quot; keeps the extensions&apos; settings for later jobs to this printer; &quot;Clear Saved Settings&quot; on the Summary tab removes them. See pde-print --help.</source>
        <translation>このダイアログは CUPS で印刷します。Qt 標準のタブの後にあるタブはプリンタの拡張機能バンドルによるもので、「名前」で選んだプリンタに従って変わります。「概要」にはジョブに含まれる設定が表示されます。「プリンタのデフォルトとして保存」を選ぶと、拡張機能の設定がこのプリンタへの以後のジョブのために保存されます。「概要」タブの「保存した設定を消去」で削除できます。詳しくは pde-print --help を参照してください。</translation>
    </message>
    <message>
        <source>no printer to print to (choose one in the dialog)</source>
        <translation>印刷先のプリンタがありません（ダイアログで選択してください）</translation>
    </message>
    <message>
        <source>%1: no such printer</source>
        <translation>%1: そのようなプリンタはありません</translation>
    </message>
</context>
<context>
    <name>pdehost::PrinterSession</name>
    <message>
        <source>%1: not a PPD file: %2 (line %3)</source>
        <translation>%1: PPD ファイルではありません: %2（%3 行目）</translation>
    </message>
    <message>
        <source>%1: no such printer</source>
        <translation>%1: そのようなプリンタはありません</translation>
    </message>
    <message>
        <source>%1: the printer&apos;s PPD cannot be had: %2</source>
        <translation>%1: プリンタの PPD を取得できません: %2</translation>
    </message>
    <message>
        <source>no printer to save defaults for (a PPD file was given)</source>
        <translation>デフォルトを保存するプリンタがありません（PPD ファイルが指定されています）</translation>
    </message>
    <message>
        <source>no printer to clear defaults for (a PPD file was given)</source>
        <translation>デフォルトを消去するプリンタがありません（PPD ファイルが指定されています）</translation>
    </message>
</context>
<context>
    <name>pdehost::SummaryView</name>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>値</translation>
    </message>
</context>
</TS>
