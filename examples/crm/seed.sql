-- The sample CRM's first items: what a small commercial office keeps about its customers.
-- Their numbers stand between the application's own (below 20000) and those that are given out
-- (above 100000).

insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50001, 21, 'Açúcar & Afeto Confeitaria', 'EMP-001', 7, 1, { ts '2008-01-01 08:00:00' }, 1, { ts '2008-02-01 08:00:00' }, 'Encomendas de festa às sextas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50002, 21, 'Água Limpa Serviços de Saneamento', 'EMP-002', 7, 1, { ts '2008-04-06 09:13:07' }, 1, { ts '2008-06-12 11:17:11' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50003, 21, 'Almeida, Brandão e Filhos Ltda.', 'EMP-003', 7, 1, { ts '2008-07-11 10:26:14' }, 1, { ts '2008-10-23 14:34:22' }, 'Terceira geração no comando.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50004, 21, 'Boi na Brasa Churrascaria', 'EMP-004', 7, 1, { ts '2008-01-16 11:39:21' }, 1, { ts '2008-02-06 17:51:33' }, 'Fecha às segundas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50005, 21, 'Café do Mirante', 'EMP-005', 7, 1, { ts '2008-04-21 12:52:28' }, 1, { ts '2008-06-17 10:08:44' }, 'Entrega até as 9h, pela rua de trás.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50006, 21, 'Casa d''Ouro Joalheria', 'EMP-006', 7, 1, { ts '2008-07-26 13:05:35' }, 1, { ts '2008-10-28 13:25:55' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50007, 21, 'Cerâmica São João', 'EMP-007', 7, 1, { ts '2008-01-03 14:18:42' }, 1, { ts '2008-02-11 16:42:06' }, 'Fornece também telhas esmaltadas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50008, 21, 'Clínica Vida & Saúde', 'EMP-008', 7, 1, { ts '2008-04-08 15:31:49' }, 1, { ts '2008-06-22 09:59:17' }, 'Agendar visitas com a recepção.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50009, 21, 'Escola Pé de Moleque', 'EMP-009', 7, 1, { ts '2008-07-13 16:44:56' }, 1, { ts '2008-10-05 12:16:28' }, 'Férias em janeiro e julho.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50010, 21, 'Expresso Tietê Transportes', 'EMP-010', 7, 1, { ts '2008-01-18 17:57:03' }, 1, { ts '2008-02-16 15:33:39' }, 'Frota de 42 caminhões.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50011, 21, 'Farmácia Boa Esperança', 'EMP-011', 7, 1, { ts '2008-04-23 08:10:10' }, 1, { ts '2008-06-27 08:50:50' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50012, 21, 'Gráfica Três Irmãos', 'EMP-012', 7, 1, { ts '2008-07-28 09:23:17' }, 1, { ts '2008-10-10 11:07:01' }, 'Aceita arquivos até 17h.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50013, 21, 'Hotel Serra Azul', 'EMP-013', 7, 1, { ts '2008-01-05 10:36:24' }, 1, { ts '2008-02-21 14:24:12' }, 'Alta temporada de junho a agosto.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50014, 21, 'Laticínios Vale do Paraíba', 'EMP-014', 7, 1, { ts '2008-04-10 11:49:31' }, 1, { ts '2008-06-04 17:41:23' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50015, 21, 'Oficina Mecânica do Zé', 'EMP-015', 7, 1, { ts '2008-07-15 12:02:38' }, 1, { ts '2008-10-15 10:58:34' }, 'Prefere contato por telefone.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50016, 21, 'Pousada Maré Mansa', 'EMP-016', 7, 1, { ts '2008-01-20 13:15:45' }, 1, { ts '2008-02-26 13:15:45' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50017, 20, 'Atas de reunião de 2008', 'PAS-01', 7, 1, { ts '2008-04-25 14:28:52' }, 1, { ts '2008-06-09 16:32:56' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50018, 20, 'Comprovantes de entrega', 'PAS-02', 7, 1, { ts '2008-07-02 15:41:59' }, 1, { ts '2008-10-20 09:49:07' }, 'Guardar por cinco anos.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50019, 20, 'Contratos em vigor', 'PAS-03', 7, 1, { ts '2008-01-07 16:54:06' }, 1, { ts '2008-02-03 12:06:18' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50020, 20, 'Correspondência expedida', 'PAS-04', 7, 1, { ts '2008-04-12 17:07:13' }, 1, { ts '2008-06-14 15:23:29' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50021, 20, 'Fotos das visitas técnicas', 'PAS-05', 7, 1, { ts '2008-07-17 08:20:20' }, 1, { ts '2008-10-25 08:40:40' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50022, 20, 'Modelos de proposta', 'PAS-06', 7, 1, { ts '2008-01-22 09:33:27' }, 1, { ts '2008-02-08 11:57:51' }, 'Usar sempre a versão mais nova.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50023, 20, 'Notas fiscais do trimestre', 'PAS-07', 7, 1, { ts '2008-04-27 10:46:34' }, 1, { ts '2008-06-19 14:14:02' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50024, 22, 'Proposta: reforma da recepção da Clínica Vida & Saúde', 'PRO-2008/031', 7, 1, { ts '2008-07-04 11:59:41' }, 1, { ts '2008-10-02 17:31:13' }, 'Aguarda a aprovação do conselho.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50025, 22, 'Proposta: uniformes da Escola Pé de Moleque', 'PRO-2008/032', 7, 1, { ts '2008-01-09 12:12:48' }, 1, { ts '2008-02-13 10:48:24' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50026, 22, 'Proposta: frota nova do Expresso Tietê', 'PRO-2008/033', 7, 1, { ts '2008-04-14 13:25:55' }, 1, { ts '2008-06-24 13:05:35' }, 'Incluir manutenção por 24 meses.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50027, 22, 'Proposta: cardápios do Café do Mirante', 'PRO-2008/034', 7, 1, { ts '2008-07-19 14:38:02' }, 1, { ts '2008-10-07 16:22:46' }, 'Papel reciclado, 300 unidades.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50028, 22, 'Proposta: sinalização do Hotel Serra Azul', 'PRO-2008/035', 7, 1, { ts '2008-01-24 15:51:09' }, 1, { ts '2008-02-18 09:39:57' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50029, 22, 'Proposta: embalagens da Açúcar & Afeto', 'PRO-2008/036', 7, 1, { ts '2008-04-01 16:04:16' }, 1, { ts '2008-06-01 12:56:08' }, 'Desconto de 5% à vista.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50030, 23, 'Contrato de manutenção: Cerâmica São João', 'CON-0117', 7, 1, { ts '2008-07-06 17:17:23' }, 1, { ts '2008-10-12 15:13:19' }, 'Renova em março.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50031, 23, 'Contrato de fornecimento: Laticínios Vale do Paraíba', 'CON-0118', 7, 1, { ts '2008-01-11 08:30:30' }, 1, { ts '2008-02-23 08:30:30' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50032, 23, 'Contrato de hospedagem: Pousada Maré Mansa', 'CON-0119', 7, 1, { ts '2008-04-16 09:43:37' }, 1, { ts '2008-06-06 11:47:41' }, 'Reajuste anual pelo índice oficial.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50033, 23, 'Contrato de frete: Expresso Tietê', 'CON-0120', 7, 1, { ts '2008-07-21 10:56:44' }, 1, { ts '2008-10-17 14:04:52' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50034, 23, 'Contrato de impressão: Gráfica Três Irmãos', 'CON-0121', 7, 1, { ts '2008-01-26 11:09:51' }, 1, { ts '2008-02-28 17:21:03' }, 'Mínimo de 2.000 páginas ao mês.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50035, 24, 'Chamado: a impressora fiscal não liga', 'CHA-0502', 7, 1, { ts '2008-04-03 12:22:58' }, 1, { ts '2008-06-11 10:38:14' }, 'Trocar a fonte e testar.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50036, 24, 'Chamado: emissão de segunda via do boleto', 'CHA-0503', 7, 1, { ts '2008-07-08 13:35:05' }, 1, { ts '2008-10-22 13:55:25' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50037, 24, 'Chamado: dúvida sobre a fatura de outubro', 'CHA-0504', 7, 1, { ts '2008-01-13 14:48:12' }, 1, { ts '2008-02-05 16:12:36' }, 'Retornar a ligação à tarde.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50038, 24, 'Chamado: mudança de endereço de cobrança', 'CHA-0505', 7, 1, { ts '2008-04-18 15:01:19' }, 1, { ts '2008-06-16 09:29:47' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50039, 24, 'Chamado: treinamento de três usuários', 'CHA-0506', 7, 1, { ts '2008-07-23 16:14:26' }, 1, { ts '2008-10-27 12:46:58' }, 'Preferência por terça ou quinta.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50040, 24, 'Chamado: pedido de amostras de azulejo', 'CHA-0507', 7, 1, { ts '2008-01-28 17:27:33' }, 1, { ts '2008-02-10 15:03:09' }, '', 0);

-- The system itself, whose parameters hold for every item, and the applications: numbers of the application's own.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (1, 1, 'Sistema', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (100, 29, 'Pelm CRM', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (110, 29, 'Pelm Financeiro', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (120, 29, 'Pelm Estoque', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);

-- Positions.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50101, 25, 'Comprador', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50101);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50102, 25, 'Diretor', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50102);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50103, 25, 'Gerente', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50103);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50104, 25, 'Proprietário', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50104);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50105, 25, 'Recepcionista', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50105);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50106, 25, 'Sócio-gerente', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50106);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50107, 25, 'Técnico', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into cargo (oid) values (50107);

-- Cities.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50201, 27, 'Belo Horizonte / MG', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50202, 27, 'Campinas / SP', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50203, 27, 'Curitiba / PR', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50204, 27, 'Paraty / RJ', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50205, 27, 'Santa Bárbara d''Oeste / SP', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50206, 27, 'São José dos Campos / SP', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50207, 27, 'São Paulo / SP', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);

-- Kinds of communication; the code tells the pages what a value looks like.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50301, 28, 'Celular', 'TELEFONE', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50302, 28, 'E-mail', 'EMAIL', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50303, 28, 'Fax', 'TELEFONE', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50304, 28, 'Página na rede', 'PAGINA', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50305, 28, 'Telefone', 'TELEFONE', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);

-- Contacts of some companies, as the component keeps them: item, person, classification (1000), grouping.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50401, 45, 'Ana Lúcia Sant''Anna', '', 7, 1, { ts '2008-03-10 09:30:00' }, 1, { ts '2008-03-10 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50401, '', null);
insert into pessoafisica (oid) values (50401);
insert into classificacao (oid, ritem, rcategoria) values (50501, 50401, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50601, 50104, 50001, 50401);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50402, 45, 'Bento Água-Viva', '', 7, 1, { ts '2008-03-11 09:30:00' }, 1, { ts '2008-03-11 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50402, '', null);
insert into pessoafisica (oid) values (50402);
insert into classificacao (oid, ritem, rcategoria) values (50502, 50402, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50602, 50102, 50002, 50402);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50403, 45, 'Célia Brandão', '', 7, 1, { ts '2008-03-12 09:30:00' }, 1, { ts '2008-03-12 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50403, '', null);
insert into pessoafisica (oid) values (50403);
insert into classificacao (oid, ritem, rcategoria) values (50503, 50403, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50603, 50106, 50003, 50403);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50404, 45, 'Otávio Almeida', '', 7, 1, { ts '2008-03-13 09:30:00' }, 1, { ts '2008-03-13 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50404, '', null);
insert into pessoafisica (oid) values (50404);
insert into classificacao (oid, ritem, rcategoria) values (50504, 50404, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50604, 50102, 50003, 50404);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50405, 45, 'Dirceu Fontes', '', 7, 1, { ts '2008-03-14 09:30:00' }, 1, { ts '2008-03-14 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50405, '', null);
insert into pessoafisica (oid) values (50405);
insert into classificacao (oid, ritem, rcategoria) values (50505, 50405, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50605, 50103, 50005, 50405);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50406, 45, 'Íris Coração de Jesus', '', 7, 1, { ts '2008-03-15 09:30:00' }, 1, { ts '2008-03-15 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50406, '', null);
insert into pessoafisica (oid) values (50406);
insert into classificacao (oid, ritem, rcategoria) values (50506, 50406, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50606, 50105, 50008, 50406);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50407, 45, 'Zé Ramos', '', 7, 1, { ts '2008-03-16 09:30:00' }, 1, { ts '2008-03-16 09:30:00' }, '', 0);
insert into pessoa (oid, razaosocial, identificador) values (50407, '', null);
insert into pessoafisica (oid) values (50407);
insert into classificacao (oid, ritem, rcategoria) values (50507, 50407, 1000);
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50607, 50104, 50015, 50407);

-- Their addresses (items of class 26, classified as 1066) and ways of reaching them.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50701, 26, 'Avenida Paulista sala 12 1500', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into endereco (oid, ritem, rcidade, cep, bairro, complemento, numero, rua, referencia) values (50701, 50401, 50207, '01310-200', 'Bela Vista', 'sala 12', '1500', 'Avenida Paulista', 'Em frente ao museu.');
insert into classificacao (oid, ritem, rcategoria) values (50511, 50701, 1066);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50702, 26, 'Rua Treze de Maio  88', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into endereco (oid, ritem, rcidade, cep, bairro, complemento, numero, rua, referencia) values (50702, 50403, 50202, '13010-001', 'Centro', '', '88', 'Rua Treze de Maio', '');
insert into classificacao (oid, ritem, rcategoria) values (50512, 50702, 1066);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50703, 26, 'Rua dos Ferreiros fundos 21', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into endereco (oid, ritem, rcidade, cep, bairro, complemento, numero, rua, referencia) values (50703, 50407, 50206, '12210-090', 'Centro', 'fundos', '21', 'Rua dos Ferreiros', 'Portão verde.');
insert into classificacao (oid, ritem, rcategoria) values (50513, 50703, 1066);
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50801, 50401, 50305, 50701, '(11) 5555-0101');
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50802, 50401, 50302, 7, 'ana.lucia@acucareafeto.example');
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50803, 50403, 50301, 7, '(19) 95555-0103');
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50804, 50405, 50302, 7, 'dirceu@cafedomirante.example');
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50805, 50407, 50305, 50703, '(12) 5555-0107');

-- Parameters: a category of the name, a definition of that category, the system's value, an item's own.
insert into categoria (oid, rsuper, nomeinterno) values (50900, 7, 'PARAMETROS');
insert into categoria (oid, rsuper, nomeinterno) values (50901, 50900, 'INICIO_DOS_PEDIDOS');
insert into dadoadicional (oid, rtipo) values (50911, 50901);
insert into aditivo (oid, ritem, rdefinicao, svalor) values (50921, 1, 50911, '500');
insert into categoria (oid, rsuper, nomeinterno) values (50902, 50900, 'PRAZO_DE_ENTREGA');
insert into dadoadicional (oid, rtipo) values (50912, 50902);
insert into aditivo (oid, ritem, rdefinicao, svalor) values (50922, 1, 50912, '5 dias úteis');
insert into categoria (oid, rsuper, nomeinterno) values (50903, 50900, 'SAUDACAO');
insert into dadoadicional (oid, rtipo) values (50913, 50903);
insert into aditivo (oid, ritem, rdefinicao, svalor) values (50923, 1, 50913, 'Prezados senhores,');
insert into aditivo (oid, ritem, rdefinicao, svalor) values (50931, 50005, 50912, 'até as 9h do dia seguinte');

-- Who works here: employees, each with a user (a communication of type 1121), the users' group.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50951, 30, 'Beatriz Nogueira', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50952, 30, 'Caio Prado', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50955, 33, 'beatriz', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50956, 33, 'caio', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50961, 31, 'Atendimento', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into usuario (oid) values (50955);
insert into usuario (oid) values (50956);
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50957, 50951, 1121, 50955, '');
insert into comunicacao (oid, ritem, rtipo, rendereco, valor) values (50958, 50952, 1121, 50956, '');
insert into agrupamento (oid, rpapel, rgrupo, ritem) values (50962, 7, 50961, 50956);

-- Lists of objects, and who may use them: the group not the first and the third; the second only Beatriz.
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50971, 32, 'Administração', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50972, 32, 'Financeiro', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (50973, 32, 'Exclusões', '', 7, 1, { ts '2008-01-02 08:00:00' }, 1, { ts '2008-01-02 08:00:00' }, '', 0);
insert into listadeobjetos (oid, rdominio) values (50971, null);
insert into listadeobjetos (oid, rdominio) values (50972, null);
insert into listadeobjetos (oid, rdominio) values (50973, null);
insert into permissao (oid, rusuario, rescopo, acesso) values (50981, 50961, 50971, 0);
insert into permissao (oid, rusuario, rescopo, acesso) values (50982, 50961, 50973, 0);
insert into permissao (oid, rusuario, rescopo, acesso) values (50983, 1, 50972, 0);
insert into permissao (oid, rusuario, rescopo, acesso) values (50984, 50955, 50972, 1);

-- The menu, below the root 7.
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (8, 'Início', '/', 7, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (9, 'Itens', null, 7, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (10, 'Contatos', null, 7, null, 3);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (11, 'Financeiro', null, 7, 50972, 4);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (12, 'Administração', null, 7, 50971, 5);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (13, 'Todos os itens', '/itens/', 9, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (14, 'Novo item', '/itens/novo.page', 9, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (15, 'Por tipo', null, 9, null, 3);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (16, 'Categorias', '/categorias/', 9, null, 4);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (17, 'Lixeira', '/itens/lixeira.page', 9, 50973, 5);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (18, 'Empresas', '/itens/?busca=EMP-', 15, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (19, 'Pastas', '/itens/?busca=PAS-', 15, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (20, 'Propostas', '/itens/?busca=PRO-', 15, null, 3);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (21, 'Contratos', '/itens/?busca=CON-', 15, null, 4);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (22, 'Chamados', '/itens/?busca=CHA-', 15, null, 5);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (23, 'Empresas e contatos', '/contatos/', 10, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (24, 'Agenda de retornos', '/agenda/', 10, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (25, 'Conferir boleto', '/boletos/', 11, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (26, 'Números de sequência', '/numeros/', 11, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (27, 'Parâmetros', '/parametros/', 12, null, 1);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (28, 'Sessões de uso', '/sessoes/', 12, null, 2);
insert into Pelm_Menu (id, Nome, Link, rEscopo, rListadeObjetos, Ordem) values (29, 'Opções do menu', '/menus/', 12, null, 3);

-- The tree of the items' categories, and items in it.
insert into categoria (oid, rsuper, nomeinterno) values (50990, 7, 'CATEGORIAS_DE_ITENS');
insert into categoria (oid, rsuper, nomeinterno) values (50991, 50990, 'Clientes');
insert into categoria (oid, rsuper, nomeinterno) values (50992, 50991, 'Alimentação');
insert into categoria (oid, rsuper, nomeinterno) values (50993, 50991, 'Hospedagem');
insert into categoria (oid, rsuper, nomeinterno) values (50994, 50991, 'Saúde e educação');
insert into categoria (oid, rsuper, nomeinterno) values (50995, 50990, 'Documentos');
insert into categoria (oid, rsuper, nomeinterno) values (50996, 50995, 'Arquivo');
insert into categoria (oid, rsuper, nomeinterno) values (50997, 50995, 'Modelos');
insert into classificacao (oid, ritem, rcategoria) values (51001, 50001, 50992);
insert into classificacao (oid, ritem, rcategoria) values (51002, 50004, 50992);
insert into classificacao (oid, ritem, rcategoria) values (51003, 50005, 50992);
insert into classificacao (oid, ritem, rcategoria) values (51004, 50013, 50993);
insert into classificacao (oid, ritem, rcategoria) values (51005, 50016, 50993);
insert into classificacao (oid, ritem, rcategoria) values (51006, 50008, 50994);
insert into classificacao (oid, ritem, rcategoria) values (51007, 50009, 50994);
insert into classificacao (oid, ritem, rcategoria) values (51008, 50017, 50996);
insert into classificacao (oid, ritem, rcategoria) values (51009, 50018, 50996);
insert into classificacao (oid, ritem, rcategoria) values (51010, 50023, 50996);
insert into classificacao (oid, ritem, rcategoria) values (51011, 50022, 50997);

-- When a company is to be called again: additional data of the date type (1015).
insert into dadoadicional (oid, rtipo) values (51041, 1015);
insert into aditivo (oid, ritem, rdefinicao, dtvalor) values (51051, 50008, 51041, { ts '2008-12-15 00:00:00' });
insert into aditivo (oid, ritem, rdefinicao, dtvalor) values (51052, 50005, 51041, { ts '2009-01-05 00:00:00' });
