<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en_US">
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
</TS>
