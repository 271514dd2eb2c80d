@echo off
echo hello from an installed file
