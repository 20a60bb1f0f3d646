<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en_US">
<context>
    <name>ApplLaunchWidget</name>
    <message>
        <source>ApplLaunchWidget</source>
        <translation>アプリケーション起動ウィジェット</translation>
    </message>
    <message>
        <source>Editor can not be found.
Please add an editor on the application screen.

%1</source>
        <translation>エディタが見つかりません。
アプリケーション管理画面でエディタを追加してください。

%1</translation>
    </message>
    <message>
        <source>Failed to start the editor ver. %1.

Please install the editor of the displayed version again.</source>
        <translation>エディタ ver. %1 を起動できませんでした。

表示されたバージョンのエディタを再インストールしてください。</translation>
    </message>
    <message>
        <source>Start %1 %2</source>
        <translation>%1 %2 を起動</translation>
    </message>
</context>
<context>
    <name>DownloadDialog</name>
    <message>
        <source>Downloading</source>
        <translation>ダウンロード中</translation>
    </message>
    <message>
        <source>Now downloading...</source>
        <translation>ダウンロードしています...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>The installer was not downloaded: it, or the update catalogue that names it, comes over an unencrypted connection (plain http), and the catalogue gives no checksum to show that it is the maker&apos;s file.

%1</source>
        <translation>インストーラーはダウンロードされませんでした。インストーラーまたはそれを示すアップデートカタログが暗号化されていない接続 (http) で届き、カタログにはメーカーのファイルであることを確かめるチェックサムがありません。

%1</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>The download failed.</source>
        <translation>ダウンロードに失敗しました。</translation>
    </message>
    <message>
        <source>%1 of %2 %3</source>
        <translation>%1 / %2 %3</translation>
    </message>
    <message>
        <source>%1 s left</source>
        <translation>残り %1 秒</translation>
    </message>
    <message>
        <source>%1 min %2 s left</source>
        <translation>残り %1 分 %2 秒</translation>
    </message>
    <message>
        <source>%1 h %2 min left</source>
        <translation>残り %1 時間 %2 分</translation>
    </message>
    <message>
        <source>%1 so far</source>
        <translation>%1 受信済み</translation>
    </message>
    <message>
        <source>%1, %2/s</source>
        <translation>%1、%2/秒</translation>
    </message>
    <message>
        <source>%1, %2/s, %3</source>
        <translation>%1、%2/秒、%3</translation>
    </message>
    <message>
        <source>The server gives the installer a name under which it cannot be saved.</source>
        <translation>サーバーが示すインストーラーの名前では保存できません。</translation>
    </message>
    <message>
        <source>The installer was not found on the server (HTTP %1).</source>
        <translation>インストーラーがサーバー上に見つかりませんでした (HTTP %1)。</translation>
    </message>
    <message>
        <source>The server could not send the installer (HTTP %1).</source>
        <translation>サーバーがインストーラーを送信できませんでした (HTTP %1)。</translation>
    </message>
    <message>
        <source>The server could not be reached. Please check that the network is connected.</source>
        <translation>サーバーに接続できませんでした。ネットワークに接続されているか確認してください。</translation>
    </message>
    <message>
        <source>The connection to the server was lost.</source>
        <translation>サーバーとの接続が切れました。</translation>
    </message>
    <message>
        <source>The connection was lost after %1.</source>
        <translation>%1 の時点で接続が切れました。</translation>
    </message>
    <message>
        <source>The server sent nothing for %1 seconds, so the download was stopped.</source>
        <translation>サーバーから %1 秒間データが届かなかったため、ダウンロードを中止しました。</translation>
    </message>
    <message>
        <source>The server redirected the download too many times.</source>
        <translation>サーバーによるダウンロードの転送 (リダイレクト) が多すぎます。</translation>
    </message>
    <message>
        <source>The server redirected the download to an address that is not secure, so it was stopped.</source>
        <translation>サーバーが安全でないアドレスへダウンロードを転送しようとしたため、中止しました。</translation>
    </message>
    <message>
        <source>The server sent an answer that does not fit the request, so nothing was saved.</source>
        <translation>サーバーの応答が要求と合わないため、何も保存しませんでした。</translation>
    </message>
    <message>
        <source>Not enough free space in Downloads: %1 needed, %2 free.</source>
        <translation>ダウンロード フォルダーの空き容量が足りません: 必要 %1、空き %2。</translation>
    </message>
    <message>
        <source>The installer could not be saved in Downloads: %1</source>
        <translation>インストーラーをダウンロード フォルダーに保存できませんでした: %1</translation>
    </message>
    <message>
        <source>The downloaded file is not the installer that was published (its checksum differs).</source>
        <translation>ダウンロードしたファイルが公開されているインストーラーと一致しません。</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be made.</source>
        <translation>サーバーとの安全な接続を確立できませんでした。</translation>
    </message>
    <message>
        <source>The download failed: %1</source>
        <translation>ダウンロードに失敗しました: %1</translation>
    </message>
    <message>
        <source>The server&apos;s certificate could not be verified, so the download was stopped.</source>
        <translation>サーバーの証明書を確認できなかったため、ダウンロードを中止しました。</translation>
    </message>
    <message>
        <source>Installing</source>
        <translation>インストール中</translation>
    </message>
    <message>
        <source>Installing %1 ver %2...</source>
        <translation>%1 ver %2 をインストール中...</translation>
    </message>
    <message>
        <source>The installer runs in a window of its own; this one closes when it has ended.</source>
        <translation>インストーラーは別のウィンドウで動いています。終わるとこのウィンドウは閉じます。</translation>
    </message>
    <message>
        <source>Uninstalling</source>
        <translation>アンインストール中</translation>
    </message>
    <message>
        <source>Uninstalling %1 ver %2...</source>
        <translation>%1 ver %2 をアンインストール中...</translation>
    </message>
    <message>
        <source>The uninstaller runs in a window of its own; this one closes when it has ended.</source>
        <translation>アンインストーラーは別のウィンドウで動いています。終わるとこのウィンドウは閉じます。</translation>
    </message>
    <message>
        <source>The uninstaller of %1 ver %2 is still running.</source>
        <translation>%1 ver %2 のアンインストーラーはまだ動いています。</translation>
    </message>
    <message>
        <source>The installer of %1 ver %2 is still running.</source>
        <translation>%1 ver %2 のインストーラーはまだ動いています。</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Close Zanmir Launcher and leave it running?</source>
        <translation>プログラムを動かしたまま Zanmir Launcher を閉じますか?</translation>
    </message>
</context>
<context>
    <name>EditorInstallWidget</name>
    <message>
        <source>EditorInstallWidget</source>
        <translation>エディタインストールウィジェット</translation>
    </message>
    <message>
        <source>Install Editor</source>
        <translation>エディタを追加</translation>
    </message>
</context>
<context>
    <name>HomeForm</name>
    <message>
        <source>Zanmir Launcher</source>
        <translation>Zanmir Launcher</translation>
    </message>
</context>
<context>
    <name>HomeWidget</name>
    <message>
        <source>HomeWidget</source>
        <translation>ホームウィジェット</translation>
    </message>
    <message>
        <source>Launch Editor:</source>
        <translation>エディタを起動:</translation>
    </message>
    <message>
        <source>Recent used projects:</source>
        <translation>最近使ったプロジェクト:</translation>
    </message>
    <message>
        <source>Open a project file in the editor that fits it (Ctrl+O)</source>
        <translation>プロジェクトファイルを対応するエディタで開きます (Ctrl+O)</translation>
    </message>
    <message>
        <source>Open project...</source>
        <translation>プロジェクトを開く...</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Show only the projects whose file name or folder holds this text (Ctrl+F; Escape clears it)</source>
        <translation>ファイル名またはフォルダにこの文字列を含むプロジェクトだけを表示します (Ctrl+F、Esc で消去)</translation>
    </message>
    <message>
        <source>Filter recent projects</source>
        <translation>最近使ったプロジェクトを絞り込む</translation>
    </message>
    <message>
        <source>Filter by name or folder</source>
        <translation>名前またはフォルダで絞り込み</translation>
    </message>
</context>
<context>
    <name>InstalledEditorWidget</name>
    <message>
        <source>InstalledEditorWidget</source>
        <translation>インストール済みエディタウィジェット</translation>
    </message>
    <message>
        <source>Manage Zanmir Editor:</source>
        <translation>エディタを管理:</translation>
    </message>
    <message>
        <source>Installed editor does not exist.
Please install any editor.</source>
        <translation>インストールされているエディタがありません。
エディタをインストールしてください。</translation>
    </message>
    <message>
        <source>Recent version %1 is available.</source>
        <translation>最新バージョン %1 が利用できます。</translation>
    </message>
</context>
<context>
    <name>LaunchButtonWidget</name>
    <message>
        <source>LaunchButtonWidget</source>
        <translation>起動ボタンウィジェット</translation>
    </message>
    <message>
        <source>Installed editor does not exist.
Please install any editor using Application Management.</source>
        <translation>インストールされているエディタがありません。
アプリケーション管理からエディタをインストールしてください。</translation>
    </message>
</context>
<context>
    <name>LauncherUpdateWidget</name>
    <message>
        <source>Update Zanmir Launcher</source>
        <translation>Zanmir Launcher の更新</translation>
    </message>
    <message>
        <source>Update histories:</source>
        <translation>更新履歴:</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>A new version (%1) of Zanmir Launcher is ready.
Please click Update button for download installer and update Launcher.
Zanmir Launcher could not be launched until installation will be finished.</source>
        <translation>Zanmir Launcher の新しいバージョン (%1) が利用できます。
[更新] でインストーラーをダウンロードして更新してください。更新が終わるまで起動できません。</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Are you sure to download installer for %1 ver %2?</source>
        <translation>%1 ver %2 のインストーラーをダウンロードしますか?</translation>
    </message>
    <message>
        <source>Launcher</source>
        <translation>Launcher</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
<context>
    <name>LicenseManageWidget</name>
    <message>
        <source>LicenseManageWidget</source>
        <translation>ライセンス管理ウィジェット</translation>
    </message>
    <message>
        <source>Manage licenses:</source>
        <translation>ライセンスを管理:</translation>
    </message>
    <message>
        <source>Licenses of the Vorlix Zanmir Editor are bought in the maker&apos;s online store and registered and released through the maker&apos;s license service, not in this launcher.
This launcher keeps no license data of its own.</source>
        <translation>Vorlix Zanmir Editor のライセンスはメーカーのオンラインストアで購入し、登録と解除はメーカーのライセンスサービスで行います。このランチャーでは行いません。
このランチャーはライセンス情報を保持しません。</translation>
    </message>
    <message>
        <source>Open the online store</source>
        <translation>オンラインストアを開く</translation>
    </message>
</context>
<context>
    <name>MenuButtonWidget</name>
    <message>
        <source>MenuButtonWidget</source>
        <translation>メニューボタンウィジェット</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>新着情報</translation>
    </message>
    <message>
        <source>HowToUse</source>
        <translation>使い方</translation>
    </message>
    <message>
        <source>ManageAppl</source>
        <translation>アプリ管理</translation>
    </message>
    <message>
        <source>ManageLicense</source>
        <translation>ライセンス</translation>
    </message>
    <message>
        <source>Preference</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>再読み込み</translation>
    </message>
</context>
<context>
    <name>MissingWebPage</name>
    <message>
        <source>This page cannot be shown: a part of Zanmir Launcher is missing.
Installing Zanmir Launcher again repairs it.</source>
        <translation>このページを表示できません: Zanmir Launcher の一部が見つかりません。
Zanmir Launcher をインストールし直すと直ります。</translation>
    </message>
</context>
<context>
    <name>PackageManager</name>
    <message>
        <source>error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Failed to detect download url.

Please try again after a while.</source>
        <translation>ダウンロード先を特定できませんでした。

しばらくしてからもう一度お試しください。</translation>
    </message>
    <message>
        <source>Network is not available.
Cannot install.

Check network settings.</source>
        <translation>ネットワークを利用できません。
インストールできません。

ネットワーク設定を確認してください。</translation>
    </message>
    <message>
        <source>Are you finished to install %1 ver %2 ?</source>
        <translation>%1 ver %2 のインストールは完了しましたか?</translation>
    </message>
    <message>
        <source>Network is not available.
Cannot update.

Check network settings.</source>
        <translation>ネットワークを利用できません。
アップデートできません。

ネットワーク設定を確認してください。</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>新着情報</translation>
    </message>
    <message>
        <source>This is recent release version.</source>
        <translation>これは最新のリリースバージョンです。</translation>
    </message>
    <message>
        <source>Path not found: uninstaller of %1 ver %2</source>
        <translation>パスが見つかりません: %1 ver %2 のアンインストーラー</translation>
    </message>
    <message>
        <source>Are you finished to update %1 ver %2 ?</source>
        <translation>%1 ver %2 へのアップデートは完了しましたか?</translation>
    </message>
    <message>
        <source>Are you sure to uninstall %1 ver %2 ?</source>
        <translation>%1 ver %2 をアンインストールしてもよろしいですか?</translation>
    </message>
    <message>
        <source>Failed to start uninstaller of %1 ver %2</source>
        <translation>%1 ver %2 のアンインストーラーを起動できませんでした</translation>
    </message>
    <message>
        <source>Are you finished to uninstall %1 ver %2 ?</source>
        <translation>%1 ver %2 のアンインストールは完了しましたか?</translation>
    </message>
    <message>
        <source>The update to %1 ver %2 did not complete.

%3 ver %4 is still installed; nothing was uninstalled.</source>
        <translation>%1 ver %2 へのアップデートは完了しませんでした。

%3 ver %4 はインストールされたままです。何もアンインストールしていません。</translation>
    </message>
    <message>
        <source>%1 ver %2 was updated to ver %3.</source>
        <translation>%1 ver %2 を ver %3 にアップデートしました。</translation>
    </message>
    <message>
        <source>%1 ver %2 was installed.</source>
        <translation>%1 ver %2 をインストールしました。</translation>
    </message>
    <message>
        <source>%1 ver %2 was uninstalled.</source>
        <translation>%1 ver %2 をアンインストールしました。</translation>
    </message>
</context>
<context>
    <name>PinIconWidget</name>
    <message>
        <source>PinIconWidget</source>
        <translation>ピン留めウィジェット</translation>
    </message>
</context>
<context>
    <name>PreferenceDialog</name>
    <message>
        <source>Preferences</source>
        <translation>環境設定</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>アプリケーション</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>適用</translation>
    </message>
    <message>
        <source>Application list:</source>
        <translation>アプリケーション一覧:</translation>
    </message>
    <message>
        <source>Show all installable versions.</source>
        <translation>インストール可能なすべてのバージョンを表示する。</translation>
    </message>
    <message>
        <source>This setting is effective until you restart the launcher.</source>
        <translation>この設定はランチャーを再起動するまで有効です。</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>Preferred language:</source>
        <translation>使用する言語:</translation>
    </message>
    <message>
        <source>When changing language, please restart this launcher.</source>
        <translation>言語を変更した場合は、ランチャーを再起動してください。</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>バージョン</translation>
    </message>
    <message>
        <source>About:</source>
        <translation>バージョン情報:</translation>
    </message>
    <message>
        <source>Vorlix Zanmir Launcher Version 1.2.00</source>
        <translation>Vorlix Zanmir Launcher バージョン 1.2.00</translation>
    </message>
    <message>
        <source>Copyright (C) Vorlix. All rights reserved.</source>
        <translation>Copyright (C) Vorlix. All rights reserved.</translation>
    </message>
    <message>
        <source>English</source>
        <translation>英語 (English)</translation>
    </message>
    <message>
        <source>Japanese</source>
        <translation>日本語</translation>
    </message>
    <message>
        <source>Vorlix Zanmir Version %1</source>
        <translation>Vorlix® Zanmir™ バージョン %1</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Are you sure to change the preferences?</source>
        <translation>設定を変更してもよろしいですか?</translation>
    </message>
</context>
<context>
    <name>ProcessLauncher</name>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>An incompatible proxy setting was detected.
This software may not operate properly, such as display of a web page or authentication of a license.

The corresponding proxy settings are as follows.
* A proxy server is manually specified.
* The proxy is specified by the IP address(not the domain name).

For details, refer to the online manual.
</source>
        <translation>互換性のないプロキシ設定が検出されました。
Webページの表示やライセンスの認証など、本ソフトウェアが正しく動作しない可能性があります。

対応しているプロキシ設定は次のとおりです。
* プロキシサーバーが手動で指定されている。
* プロキシがIPアドレス(ドメイン名ではなく)で指定されている。

詳細はオンラインマニュアルを参照してください。
</translation>
    </message>
    <message>
        <source>This file has unsupported extension.
%1</source>
        <translation>このファイルはサポートされていない拡張子です。
%1</translation>
    </message>
    <message>
        <source>Failed to launch default editor.
Please launch Zanmir Launcher, and confirm the installation by &apos;Manage Zanmir Editor&apos;.</source>
        <translation>既定のエディタを起動できませんでした。
Zanmir Launcher を起動し、「Zanmir Editor の管理」でインストールを確認してください。</translation>
    </message>
    <message>
        <source>Failed to launch editor.
Please launch Zanmir Launcher, and confirm the installation by &apos;Manage Zanmir Editor&apos;.</source>
        <translation>エディタを起動できませんでした。
Zanmir Launcher を起動し、「Zanmir Editor の管理」でインストールを確認してください。</translation>
    </message>
    <message>
        <source>Failed to open project file.

Please confirm the file is not corrupted.</source>
        <translation>プロジェクトファイルを開けませんでした。

ファイルが破損していないか確認してください。</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Zanmir Launcher is already launched.</source>
        <translation>Zanmir Launcher はすでに起動しています。</translation>
    </message>
</context>
<context>
    <name>ProjectOpener</name>
    <message>
        <source>Open project</source>
        <translation>プロジェクトを開く</translation>
    </message>
    <message>
        <source>Zanmir projects (*.zmr *.xml)</source>
        <translation>Zanmir プロジェクト (*.zmr *.xml)</translation>
    </message>
</context>
<context>
    <name>RecentUsedWidget</name>
    <message>
        <source>RecentUsedWidget</source>
        <translation>最近使ったプロジェクトウィジェット</translation>
    </message>
    <message>
        <source>Recent used project does not exist.</source>
        <translation>最近使ったプロジェクトはありません。</translation>
    </message>
    <message>
        <source>Application does not exist: %1
(May be uninstalled)

Please install the editor of the displayed version again.</source>
        <translation>アプリケーションがありません: %1
(アンインストールされた可能性があります)

表示されたバージョンのエディタを再インストールしてください。</translation>
    </message>
    <message>
        <source>File not found: %1
(History will be removed)</source>
        <translation>ファイルが見つかりません: %1
(履歴から削除します)</translation>
    </message>
    <message>
        <source>Failed to launch %1</source>
        <translation>%1 を起動できませんでした</translation>
    </message>
    <message>
        <source>Recent projects</source>
        <translation>最近使ったプロジェクト</translation>
    </message>
    <message>
        <source>No recent project matches &quot;%1&quot;.</source>
        <translation>「%1」に一致する最近使ったプロジェクトはありません。</translation>
    </message>
    <message>
        <source>%1, last opened %2, version %3</source>
        <translation>%1、最終使用 %2、バージョン %3</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Open with</source>
        <translation>バージョンを指定して開く</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <translation>フォルダに表示</translation>
    </message>
    <message>
        <source>Copy path</source>
        <translation>パスをコピー</translation>
    </message>
    <message>
        <source>Remove from list</source>
        <translation>一覧から削除</translation>
    </message>
    <message>
        <source>The folder could not be shown:
%1</source>
        <translation>フォルダを表示できませんでした:
%1</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Remove %1 from the recent projects?

The project file itself stays where it is.</source>
        <translation>%1 を最近使ったプロジェクトから削除しますか?

プロジェクトファイル自体はそのまま残ります。</translation>
    </message>
</context>
<context>
    <name>UpdateHistoryWidget</name>
    <message>
        <source>UpdateHistoryWidget</source>
        <translation>更新履歴ウィジェット</translation>
    </message>
    <message>
        <source>Update histories:</source>
        <translation>更新履歴:</translation>
    </message>
    <message>
        <source>update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Update editor (%1)</source>
        <translation>エディタの更新 (%1)</translation>
    </message>
    <message>
        <source>Install editor (%1)</source>
        <translation>エディタのインストール (%1)</translation>
    </message>
    <message>
        <source>install</source>
        <translation>インストール</translation>
    </message>
    <message>
        <source>Show update histories (%1)</source>
        <translation>更新履歴の表示 (%1)</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Are you sure to install %1 ver %2 ?</source>
        <translation>%1 ver %2 をインストールしますか?</translation>
    </message>
</context>
<context>
    <name>UpdateStatusWidget</name>
    <message>
        <source>UpdateStatusWidget</source>
        <translation>アップデート状態ウィジェット</translation>
    </message>
</context>
<context>
    <name>VersionDescWidget</name>
    <message>
        <source>VersionDescWidget</source>
        <translation>バージョン表示ウィジェット</translation>
    </message>
    <message>
        <source>Add to frequently used</source>
        <translation>よく使うものに追加</translation>
    </message>
    <message>
        <source>Make default on startup</source>
        <translation>起動時の既定にする</translation>
    </message>
    <message>
        <source>Update to recent version</source>
        <translation>最新バージョンにアップデート</translation>
    </message>
    <message>
        <source>Show update histories</source>
        <translation>更新履歴を表示</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>アンインストール</translation>
    </message>
</context>
<context>
    <name>WebBrowserWidget</name>
    <message>
        <source>WebBrowserWidget</source>
        <translation>Webブラウザーウィジェット</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>The launcher&apos;s window cannot be shown:
%1</source>
        <translation>ランチャーのウィンドウを表示できません:
%1</translation>
    </message>
</context>
</TS>
