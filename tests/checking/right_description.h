#pragma once

#include <string_view>

// A whole description in which no check finds anything.
inline constexpr std::string_view kRightDescription = R"(<TandrelGroupInstallation>
  <ProductDesc>
    <Fullname>Greeter</Fullname>
    <MajorVersion>1</MajorVersion>
    <MinorVersion>0</MinorVersion>
    <MinestVersion>0</MinestVersion>
    <Website>https://greeter.example</Website>
  </ProductDesc>
  <InstallerControlVariables>
    <InstallError>INSTALL_ERROR</InstallError>
    <UninstallError>UNINSTALL_ERROR</UninstallError>
  </InstallerControlVariables>
  <DefValues>
    <Value Name="INSTALL_ERROR" DataType="value">0</Value>
    <Value Name="UNINSTALL_ERROR" DataType="value">0</Value>
    <Value Name="BASE_DIR" DataType="envvar" Default="/opt">ProgramFiles</Value>
    <Value Name="INSTALL_DIR" DataType="value" UseOld="1">$BASE_DIR/greeter</Value>
  </DefValues>
  <Dialogs>
    <Welcome>
      <Text x="20" y="20">This installs Greeter.</Text>
      <Field Type="Directory" Label="Where to" x="20" y="60" w="400">INSTALL_DIR</Field>
    </Welcome>
    <CopyProgress Special="AutoNext"/>
    <RegisterApplication Special="AutoNext" Condition="[INSTALL_ERROR]==0"/>
    <BadFinish Special="BadFinish;Finish" Condition="[INSTALL_ERROR]==1"/>
    <Finish Special="Finish"/>
  </Dialogs>
  <UninstallDialogs>
    <UnregisterApplication Special="AutoNext"/>
    <CopyProgress Special="AutoNext"/>
    <BadFinish Special="BadFinish;Finish" Condition="[UNINSTALL_ERROR]==1"/>
    <Finish Special="Finish"/>
  </UninstallDialogs>
  <Installation>
    <Uninstall>
      <InstallLogFile>[INSTALL_DIR]/uninstall/install.log</InstallLogFile>
      <InstallBackupFile>[INSTALL_DIR]/uninstall/backup.bin</InstallBackupFile>
      <UninstallCmd>[INSTALL_DIR]/uninstall/installer.exe</UninstallCmd>
      <UninstallXmlFile>[INSTALL_DIR]/uninstall/install.xml</UninstallXmlFile>
    </Uninstall>
    <FileSet Name="Program">
      <FN Dest="[INSTALL_DIR]" Executable="1">greet.sh</FN>
      <FN Dest="[INSTALL_DIR]/uninstall" Executable="1">installer.exe</FN>
      <FN Dest="[INSTALL_DIR]/uninstall">install.xml</FN>
    </FileSet>
    <UninstallWildcards>
      <Records Dest="[INSTALL_DIR]/uninstall">install.log</Records>
      <Records Dest="[INSTALL_DIR]/uninstall">backup.bin</Records>
    </UninstallWildcards>
  </Installation>
</TandrelGroupInstallation>
)";
